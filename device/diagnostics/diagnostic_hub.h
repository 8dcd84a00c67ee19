#pragma once

#include <QPointer>
#include <QWidget>

#include <array>
#include <memory>

namespace Ui {
class TestMainWindow;
}

class QListWidgetItem;

/// The hub of the diagnostic windows: a list, each entry of which opens one of them.
///
/// Each hub opens its own windows, once each; clicked again, an entry brings its window back with what it held.
/// Neither the hub nor its windows keep the program alive. GUI thread.
class TestMainWindow : public QWidget
{
    Q_OBJECT

public:
    explicit TestMainWindow(QWidget* parent = nullptr);
    ~TestMainWindow() override; ///< deletes the windows that it opened

signals:
    /// One reply of the device, for the windows that the hub has opened.
    /// @param pkgTag  command code of the reply
    /// @param text    its decoded payload
    void sigAnalysisSuccess(unsigned char pkgTag, QString text);

public slots:
    /// Takes a reply of the device from the receive thread and passes it on.
    void onAnalysisSuccess(unsigned char pkgTag, QString text);

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void onItemClicked(QListWidgetItem* item);

private:
    static constexpr int kEntries = 5;

    void retranslate();
    QWidget* makeWindow(int row);

    std::unique_ptr<Ui::TestMainWindow> m_ui;
    std::array<QPointer<QWidget>, kEntries> m_windows; ///< null until their entries are clicked
};
