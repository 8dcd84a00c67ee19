#pragma once

#include <QListWidget>
#include <QShortcut>

class TestMainItem;

// What the lists of the diagnostic windows have in common. GUI thread.

/// Gives a list its look and so many empty rows.
void makeDiagnosticItems(QListWidget* list, int count);
/// Makes each row as high as its text, which another language may change: Chinese letters are higher than Latin ones.
void fitDiagnosticItems(QListWidget* list);
TestMainItem* diagnosticItem(const QListWidget* list, int row);

/// Calls `slot` for a click on a row, and for Return on the current one.
template <class Window>
void connectDiagnosticList(QListWidget* list, Window* window, void (Window::*slot)(QListWidgetItem*))
{
    QObject::connect(list, &QListWidget::itemClicked, window, slot);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(key, list, nullptr, nullptr, Qt::WidgetShortcut);
        QObject::connect(shortcut, &QShortcut::activated, window, [list, window, slot] {
            if (QListWidgetItem* item = list->currentItem())
                (window->*slot)(item);
        });
    }
}
