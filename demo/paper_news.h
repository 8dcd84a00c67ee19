#pragma once

#include "simulator/simulated_printer.h"

#include <QTimer>
#include <QVector>

#include <memory>

/// Turns the signals of a printer, thousands during a job and from the threads that write to it, into a few calls in
/// the thread where it lives. It may be destroyed while those threads are at work.
class PaperNews : public QObject
{
    Q_OBJECT

public:
    /// @param printer  has to outlive it
    explicit PaperNews(SimulatedPrinter& printer, QObject* parent = nullptr);
    ~PaperNews() override;

signals:
    /// There is something to look at; at most every 30 ms.
    void arrived();

protected:
    void customEvent(QEvent* event) override; ///< the call that came from one of the printer's threads

private:
    struct Desk;

    static void call(Desk& desk);
    void deliver();

    std::shared_ptr<Desk> m_desk;
    QVector<QMetaObject::Connection> m_connections;
    QTimer m_pause;
};
