#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class TestDeviceCommandWindow;
}

class CommandSender;
class QListWidgetItem;

/// Sends any query to the device, and shows every reply that the receive thread decodes. It never waits for a reply.
/// A command that the port does not take is not reported: its reply stays away. GUI thread.
class TestDeviceCommandWindow : public QWidget
{
    Q_OBJECT

public:
    explicit TestDeviceCommandWindow(QWidget* parent = nullptr);
    ~TestDeviceCommandWindow() override;

public slots:
    /// Appends one reply to the log.
    /// @param pkgTag  its command code
    /// @param text    its decoded payload, shown without white space; may hold any Latin-1 character
    void onAnalysisSuccess(unsigned char pkgTag, QString text);

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void onItemClicked(QListWidgetItem* item);

private:
    void retranslate();
    void append(const QString& lines);

    std::unique_ptr<Ui::TestDeviceCommandWindow> m_ui;
    CommandSender* m_sender; ///< of the window's form
};
