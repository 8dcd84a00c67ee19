#include "demo/paper_news.h"

#include <QCoreApplication>
#include <QEvent>

#include <mutex>

namespace {

constexpr int kPauseMs = 30;

} // namespace

/// Shared with the printer's threads, so that one that is just about to call finds it even after the reader is gone.
struct PaperNews::Desk
{
    enum class State { Quiet, Called, Gathering };

    std::mutex mutex;
    PaperNews* reader = nullptr;
    State state = State::Quiet;
};

PaperNews::PaperNews(SimulatedPrinter& printer, QObject* parent)
    : QObject(parent)
    , m_desk(std::make_shared<Desk>())
{
    m_desk->reader = this;
    m_pause.setSingleShot(true);
    m_pause.setInterval(kPauseMs);
    connect(&m_pause, &QTimer::timeout, this, &PaperNews::deliver);
    // In the thread that emits: an event for every frame would keep the windows busy with nothing else.
    const auto hear = [desk = m_desk] {
        call(*desk);
    };
    m_connections = {connect(&printer, &SimulatedPrinter::paperChanged, hear),
                     connect(&printer, &SimulatedPrinter::frameReceived, hear),
                     connect(&printer, &SimulatedPrinter::pluggedInChanged, hear),
                     connect(&printer, &SimulatedPrinter::conditionChanged, hear)};
}

PaperNews::~PaperNews()
{
    for (const QMetaObject::Connection& connection : qAsConst(m_connections))
        disconnect(connection);
    const std::lock_guard<std::mutex> lock(m_desk->mutex);
    m_desk->reader = nullptr;
}

void PaperNews::call(Desk& desk)
{
    const std::lock_guard<std::mutex> lock(desk.mutex); // also keeps the reader alive until the event is on its way
    if (!desk.reader || desk.state != Desk::State::Quiet)
        return;
    desk.state = Desk::State::Called;
    QCoreApplication::postEvent(desk.reader, new QEvent(QEvent::User));
}

void PaperNews::customEvent(QEvent*)
{
    {
        const std::lock_guard<std::mutex> lock(m_desk->mutex);
        m_desk->state = Desk::State::Gathering;
    }
    m_pause.start();
}

void PaperNews::deliver()
{
    {
        // First, so that what happens while somebody looks is told again.
        const std::lock_guard<std::mutex> lock(m_desk->mutex);
        m_desk->state = Desk::State::Quiet;
    }
    emit arrived();
}
