#include "device/diagnostics/command_sender.h"

#include <QGuiApplication>
#include <QTimer>

CommandSender::CommandSender(QLabel* notice)
    : QObject(notice)
    , m_notice(notice)
{
    notice->hide();
}

void CommandSender::run(const std::function<void()>& send)
{
    if (m_busy)
        return;
    m_busy = true;
    m_notice->show();
    m_notice->raise();
    m_notice->repaint(); // now: no event is handled while the port waits
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    send();
    QGuiApplication::restoreOverrideCursor();
    m_notice->hide();
    // Comes after every click that is waiting already.
    QTimer::singleShot(0, this, [this] { m_busy = false; });
}
