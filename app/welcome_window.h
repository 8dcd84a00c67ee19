#pragma once

#include "app/frameless/hm_base_window.h"

#include <memory>

namespace Ui {
class WelcomeWindow;
}

class MainWindow;

/// A splash window that makes way for the main window after five seconds. The client opens its main window directly
/// and never makes one of these. GUI thread.
class WelcomeWindow : public HMBaseWindow
{
    Q_OBJECT

public:
    explicit WelcomeWindow(QWidget* parent = nullptr);
    ~WelcomeWindow() override;

    MainWindow* mainWindow() const { return m_mainWindow; } ///< null until then; a child of this window

private:
    void handleTimeOut();

    const std::unique_ptr<Ui::WelcomeWindow> m_ui;
    MainWindow* m_mainWindow = nullptr;
};
