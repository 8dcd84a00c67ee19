#include "app/idle_moment.h"

#include "update/upgrade_dialog.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QThread>

#include <algorithm>

namespace {

bool isIdle()
{
    // Dialogs, menus and drags have event loops within the program's, each ended before what called it goes on.
    if (QThread::currentThread()->loopLevel() > 1)
        return false;
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::none_of(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && qobject_cast<const UpgradeDialog*>(window);
    });
}

} // namespace

void atIdleMoment(QObject* context, const std::function<void()>& then)
{
    if (isIdle()) {
        then();
        return;
    }
    auto* wait = new QObject(context);
    const auto look = [context, then, wait] {
        if (!isIdle())
            return;
        wait->deleteLater();
        QAbstractEventDispatcher::instance()->disconnect(wait);
        // Not while the loop goes to sleep; another dialog may have come by then.
        QMetaObject::invokeMethod(
            context, [context, then] { atIdleMoment(context, then); }, Qt::QueuedConnection);
    };
    // Whatever ends the wait is an event, behind which the loop has nothing left to do for a moment.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, wait, look);
}
