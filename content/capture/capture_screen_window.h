#pragma once

#include <QWidget>

#include <memory>

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

protected:
    void changeEvent(QEvent* event) override;

private:
    const std::unique_ptr<Ui::CaptureScreenWindow> m_ui;
};
