#pragma once

#include <QApplication>
#include <QWidget>

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
