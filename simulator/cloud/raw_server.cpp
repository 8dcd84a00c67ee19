#include "simulator/cloud/raw_server.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <utility>

namespace {
constexpr int kPollMs = 20;
constexpr qint64 kAheadBytes = qint64{1024} * 1024; ///< of what the system has taken
} // namespace

RawServer::RawServer(QByteArray head, QByteArray piece, qint64 pieces)
    : m_head(std::move(head))
    , m_piece(std::move(piece))
    , m_pieces(pieces)
    , m_thread(QThread::create([this] { serve(); }))
{
    m_thread->start();
    while (m_port == 0)
        QThread::yieldCurrentThread();
}

RawServer::~RawServer()
{
    m_ending = true;
    m_thread->wait();
}

QString RawServer::address() const
{
    return QStringLiteral("http://127.0.0.1:%1/").arg(m_port.load());
}

qint64 RawServer::sent() const
{
    return m_sent;
}

void RawServer::serve()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    m_port = server.serverPort();
    while (!m_ending) {
        server.waitForNewConnection(kPollMs);
        const std::unique_ptr<QTcpSocket> client(server.nextPendingConnection());
        if (client)
            answer(*client);
    }
}

void RawServer::answer(QTcpSocket& client)
{
    while (!m_ending && client.state() == QAbstractSocket::ConnectedState && !client.waitForReadyRead(kPollMs)) {
    }
    bool heard = send(client, m_head);
    for (qint64 i = 0; heard && i != m_pieces; ++i)
        heard = send(client, m_piece);
    client.disconnectFromHost();
    while (!m_ending && client.state() != QAbstractSocket::UnconnectedState)
        client.waitForDisconnected(kPollMs);
}

bool RawServer::send(QTcpSocket& client, const QByteArray& bytes)
{
    client.write(bytes);
    while (!m_ending && client.state() == QAbstractSocket::ConnectedState && client.bytesToWrite() > kAheadBytes)
        client.waitForBytesWritten(kPollMs);
    m_sent += bytes.size();
    return !m_ending && client.state() == QAbstractSocket::ConnectedState;
}
