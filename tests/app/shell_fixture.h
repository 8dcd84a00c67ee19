#pragma once

#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/globals/model.h"
#include "app/main_window.h"
#include "cloud/service_address.h"
#include "simulator/simulated_port.h"
#include "simulator/simulated_printer.h"
#include "tests/shown_window.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

// The main window over the simulated printer, as a person meets it.

/// Where nothing listens, so that no test asks anybody outside for a new version.
inline const QString kNoService = QStringLiteral("http://127.0.0.1:1/");

/// A main window whose threads end with it.
class Client
{
public:
    explicit Client(const QString& service = kNoService)
        : m_service(serviceAddress() = service)
    {
        m_window.show();
    }
    ~Client() { m_window.stopThreads(); }

    MainWindow* operator->() { return &m_window; }
    MainWindow& window() { return m_window; }

    void click(const char* button) { QTest::mouseClick(m_window.findChild<QPushButton*>(button), Qt::LeftButton); }

private:
    QString m_service; ///< set before the window asks it
    MainWindow m_window;
};

/// Whether a busy dialog says what it waits for, as the one of the connecting phase does.
inline bool isBusy(const QString& text)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [&text](const QWidget* window) {
        return window->isVisible() && qobject_cast<const ProgressCatRunningDialog*>(window) &&
               window->findChild<QLabel*>("labelText")->text() == text;
    });
}

inline bool isConnecting()
{
    return isBusy(QStringLiteral("设备连接中,请稍后..."));
}
