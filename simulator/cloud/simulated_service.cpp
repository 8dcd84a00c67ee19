#include "simulator/cloud/simulated_service.h"

#include "simulator/cloud/service_crypto.h"
#include "simulator/cloud/tls_identity.h"

#include <QJsonDocument>

#include <algorithm>
#include <chrono>

#include <httplib.h>

namespace {

constexpr char kHost[] = "127.0.0.1";
constexpr char kInstaller[] = "/installer.exe";
constexpr char kBinary[] = "application/octet-stream";
constexpr qint64 kPieceBytes = qint64{64} * 1024;
constexpr int kPiecesPerSecond = 20; ///< of a slow installer

std::unique_ptr<httplib::Server> serverWith(const TlsIdentity* tls)
{
    if (!tls)
        return std::make_unique<httplib::Server>();
    return std::make_unique<httplib::SSLServer>(tls->certificate(), tls->key());
}

QByteArray bytes(const std::string& text)
{
    return QByteArray(text.data(), static_cast<int>(text.size()));
}

std::string text(const QByteArray& bytes)
{
    return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

QMap<QByteArray, QByteArray> headersOf(const httplib::Request& request)
{
    QMap<QByteArray, QByteArray> headers;
    for (const auto& [name, value] : request.headers)
        headers.insert(bytes(name).toLower(), bytes(value));
    return headers;
}

QJsonObject failure(const QString& result)
{
    return {{QStringLiteral("code"), 0}, {QStringLiteral("result"), result}};
}

/// Bytes that go out next: a piece, but not past the place where something happens.
qint64 pieceAt(const InstallerFile& file, qint64 offset)
{
    qint64 end = file.size;
    for (const qint64 place : {file.cutAfter, file.holdAfter}) {
        if (place > offset)
            end = std::min(end, place);
    }
    const qint64 piece =
        file.bytesPerSecond > 0 ? std::max<qint64>(1, file.bytesPerSecond / kPiecesPerSecond) : kPieceBytes;
    return std::min(piece, end - offset);
}

} // namespace

ServiceReply ServiceReply::plain(const QJsonObject& envelope)
{
    ServiceReply reply;
    reply.body = QJsonDocument(envelope).toJson(QJsonDocument::Compact);
    return reply;
}

ServiceReply ServiceReply::enciphered(const QJsonObject& envelope)
{
    const QByteArray inner = serviceEncipher(QJsonDocument(envelope).toJson(QJsonDocument::Compact));
    return plain({{QStringLiteral("data"), QString::fromLatin1(inner)}});
}

QJsonObject ServiceReply::success(const QJsonObject& content)
{
    return {
        {QStringLiteral("code"), 1},
        {QStringLiteral("result"), QStringLiteral("ok")},
        {QStringLiteral("content"), content},
    };
}

SimulatedService::SimulatedService(int port, const TlsIdentity* tls)
    : m_scheme(tls ? QStringLiteral("https") : QStringLiteral("http"))
    , m_server(serverWith(tls))
{
    const auto call = [this](const httplib::Request& request, httplib::Response& response) {
        takeCall(request, response);
    };
    m_server->Post("/api/v3_1/(.*)", call);
    m_server->Get("/api/v3_1/(.*)", call);
    m_server->Get(kInstaller, [this](const httplib::Request& request, httplib::Response& response) {
        sendInstaller(request, response);
    });
    m_server->set_keep_alive_max_count(1); // or its end waits for the client to hang up
    m_port = port == 0 ? m_server->bind_to_any_port(kHost) : m_server->bind_to_port(kHost, port) ? port : -1;
    m_thread = std::thread([this] { m_server->listen_after_bind(); });
    while (m_port > 0 && !m_server->is_running()) // it does not heed stop() before that
        std::this_thread::yield();
}

SimulatedService::~SimulatedService()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    m_server->stop();
    m_thread.join();
}

QString SimulatedService::address() const
{
    return QStringLiteral("%1://%2:%3/api/v3_1/").arg(m_scheme, QLatin1String(kHost)).arg(m_port);
}

QString SimulatedService::installerPath() const
{
    return QStringLiteral("%1://%2:%3%4")
        .arg(m_scheme, QLatin1String(kHost))
        .arg(m_port)
        .arg(QLatin1String(kInstaller));
}

void SimulatedService::setReply(const QString& call, const ServiceReply& reply)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_replies.insert(call, reply);
}

void SimulatedService::setUser(const QString& name, const QString& password, const QJsonObject& record)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_userName = name;
    m_passwordDigest = md5Hex(password.toUtf8());
    m_userRecord = record;
}

void SimulatedService::setInstaller(const InstallerFile& installer)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_installer = installer;
}

QVector<ServiceRequest> SimulatedService::requests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

QByteArray SimulatedService::installerHeader(const QByteArray& name) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_installerHeaders.value(name.toLower());
}

int SimulatedService::installerRequests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_installerRequests;
}

void SimulatedService::takeCall(const httplib::Request& call, httplib::Response& response)
{
    ServiceRequest request;
    request.call = QString::fromStdString(call.matches[1]);
    request.headers = headersOf(call);
    request.body = bytes(call.body);
    if (call.method == "POST")
        checkServiceRequest(request);
    ServiceReply reply;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requests.append(request);
        reply = replyTo(request);
    }
    while (reply.silent && pause(1000)) {
    }
    response.status = reply.status;
    if (!reply.location.isEmpty())
        response.set_header("Location", text(reply.location));
    response.set_content(text(reply.body), text(reply.contentType));
}

ServiceReply SimulatedService::replyTo(const ServiceRequest& request) const
{
    if (!request.faults.isEmpty())
        return ServiceReply::plain(failure(request.faults.first()));
    if (m_replies.contains(request.call))
        return m_replies.value(request.call);
    if (request.call == QLatin1String("login") && !m_userName.isEmpty())
        return replyToLogin(request);
    return ServiceReply::plain(failure(QStringLiteral("there is no such call")));
}

ServiceReply SimulatedService::replyToLogin(const ServiceRequest& request) const
{
    const QString digest = request.parameters.value(QStringLiteral("userPassWord")).toString();
    if (request.parameters.value(QStringLiteral("userName")).toString() != m_userName ||
        digest.toLatin1() != m_passwordDigest)
        return ServiceReply::enciphered(failure(QStringLiteral("user name or password is wrong")));
    return ServiceReply::enciphered(ServiceReply::success(m_userRecord));
}

void SimulatedService::sendInstaller(const httplib::Request& request, httplib::Response& response)
{
    InstallerFile file;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        file = m_installer;
        m_installerHeaders = headersOf(request);
        ++m_installerRequests;
    }
    const int hop = request.has_param("hop") ? std::stoi(request.get_param_value("hop")) : 0;
    if (hop < file.redirects) {
        response.set_redirect(std::string(kInstaller) + "?hop=" + std::to_string(hop + 1));
        return;
    }
    response.status = file.status;
    const auto send = [this, file](size_t offset, httplib::DataSink& sink) {
        const auto from = static_cast<qint64>(offset);
        if (from == file.holdAfter) {
            while (pause(1000)) {
            }
        }
        if (from == file.cutAfter || from == file.holdAfter)
            return false;
        const qint64 piece = pieceAt(file, from);
        if (file.bytesPerSecond > 0 && !pause(1000 / kPiecesPerSecond))
            return false;
        const QByteArray content = file.content.isEmpty()
                                       ? installerBytes(from, piece)
                                       : file.content.mid(static_cast<int>(from), static_cast<int>(piece));
        const bool written = sink.write(content.constData(), static_cast<size_t>(content.size()));
        if (from + piece == file.size && sink.done)
            sink.done();
        return written;
    };
    if (file.size == 0)
        response.set_content(std::string(), kBinary);
    else if (file.length == InstallerFile::Length::Told)
        response.set_content_provider(
            static_cast<size_t>(file.size), kBinary,
            [send](size_t offset, size_t, httplib::DataSink& sink) { return send(offset, sink); });
    else if (file.length == InstallerFile::Length::Chunked)
        response.set_chunked_content_provider(kBinary, send);
    else
        response.set_content_provider(kBinary, send);
}

bool SimulatedService::pause(int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_changed.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_ending; });
}
