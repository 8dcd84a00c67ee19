#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <memory>

class QTcpSocket;
class QThread;

/// A server on loopback that heeds nothing: whatever a client asks, it gets the same bytes, which need not be HTTP.
/// For what no honest library sends.
///
/// One connection after the other, from construction to destruction, on a thread of its own. Any thread.
class RawServer
{
public:
    /// @param head    sent first
    /// @param piece   sent after it, so often
    /// @param pieces  -1: until the client hangs up; after the last one the server does
    explicit RawServer(QByteArray head, QByteArray piece = {}, qint64 pieces = 0);
    ~RawServer(); ///< hangs up

    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    QString address() const; ///< "http://127.0.0.1:<port>/"
    qint64 sent() const;     ///< bytes so far, to all clients

private:
    void serve();
    void answer(QTcpSocket& client);
    bool send(QTcpSocket& client, const QByteArray& bytes);

    const QByteArray m_head;
    const QByteArray m_piece;
    const qint64 m_pieces;
    std::atomic<int> m_port = 0; ///< 0: it does not listen yet
    std::atomic<bool> m_ending = false;
    std::atomic<qint64> m_sent = 0;
    std::unique_ptr<QThread> m_thread;
};
