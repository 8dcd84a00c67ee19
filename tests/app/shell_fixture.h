#pragma once

#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/globals/model.h"
#include "app/main_window.h"
#include "simulator/simulated_port.h"
#include "simulator/simulated_printer.h"

#include <QApplication>
#include <QPushButton>
#include <QtTest>

// The main window over the simulated printer, as a person meets it.

/// A main window whose threads end with it.
class Client
{
public:
    Client() { m_window.show(); }
    ~Client() { m_window.stopThreads(); }

    MainWindow* operator->() { return &m_window; }
    MainWindow& window() { return m_window; }

    void click(const char* button) { QTest::mouseClick(m_window.findChild<QPushButton*>(button), Qt::LeftButton); }

private:
    MainWindow m_window;
};

/// The visible window of a class, or null.
template <class Window>
Window* shown()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<Window*>(widget);
        if (window && window->isVisible())
            return window;
    }
    return nullptr;
}

inline bool isConnecting()
{
    return shown<ProgressCatRunningDialog>() != nullptr;
}

inline SimulatedPrinter& printer()
{
    return simulatedPrinter();
}

inline int printDataFrames()
{
    int count = 0;
    for (const FrameRecord& frame : printer().frames())
        count += frame.code == 0 ? 1 : 0;
    return count;
}
