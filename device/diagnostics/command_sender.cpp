#include "device/diagnostics/command_sender.h"

#include <QGuiApplication>
#include <QTimer>

CommandSender::CommandSender(QLabel* notice)
    : QObject(notice)
    , m_notice(notice)
{
    notice->hide();
    retranslate();
}

void CommandSender::retranslate()
{
    m_notice->setText(tr("正在发送，打印机不接收时窗口约 10 秒没有响应"));
}

void CommandSender::run(const std::function<void()>& send)
{
    if (m_busy)
        return;
    m_busy = true;
    retranslate();
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
