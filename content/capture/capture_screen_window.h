#pragma once

#include <QScopedPointer>
#include <QWidget>

namespace Ui {
class CaptureScreenWindow;
}

/// The small tool bar under a selection of the capture overlay: download, cancel, complete. GUI thread.
///
/// A child of the overlay, which shows and moves it. Its buttons never take the keyboard focus, so that Escape and
/// Return stay with the overlay.
class CaptureScreenWindow : public QWidget
{
    Q_OBJECT

public:
    explicit CaptureScreenWindow(QWidget* parent = nullptr);
    ~CaptureScreenWindow() override;

signals:
    void signalClickDownload();
    void signalClickCancel();
    void signalClickComplete();

private:
    const QScopedPointer<Ui::CaptureScreenWindow> m_ui;
};
