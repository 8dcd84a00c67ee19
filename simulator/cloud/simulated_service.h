#pragma once

#include "simulator/cloud/installer_file.h"
#include "simulator/cloud/service_request.h"

#include <QVector>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib
class TlsIdentity;

/// What the service answers to a call.
struct ServiceReply
{
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json; charset=utf-8"; ///< sent as it is; without a charset it is compressed
    QByteArray location{};                                      ///< of a redirect; empty: no such header
    bool silent = false;                                        ///< takes the call and never answers

    /// An envelope as it stands, or enciphered within another one's "data".
    static ServiceReply plain(const QJsonObject& envelope);
    static ServiceReply enciphered(const QJsonObject& envelope);
    /// An envelope that says success: code 1, "result" and the content.
    static QJsonObject success(const QJsonObject& content);
};

/// The cloud service in software, over real sockets on loopback: takes calls apart and checks them, answers as it is
/// told, and hands out an installer with every fault that a network has.
///
/// It listens from construction to destruction, on threads of its own. Every function may be called from any thread.
class SimulatedService
{
public:
    /// @param port  of 127.0.0.1, which has to be free; 0: any
    /// @param tls   with it the service is reached over TLS alone; needed until the constructor returns
    explicit SimulatedService(int port = 0, const TlsIdentity* tls = nullptr);
    ~SimulatedService(); ///< ends what is still being sent

    SimulatedService(const SimulatedService&) = delete;
    SimulatedService& operator=(const SimulatedService&) = delete;

    QString address() const; ///< what calls are appended to, "http://127.0.0.1:<port>/api/v3_1/", or "https:…"
    QString installerPath() const; ///< address of the installer

    /// A call without an answer of its own gets code 0.
    void setReply(const QString& call, const ServiceReply& reply);
    /// Answers "login": with the user's record, or with code 0 for another name or password.
    void setUser(const QString& name, const QString& password, const QJsonObject& record);
    void setInstaller(const InstallerFile& installer);

    /// Calls with faults as well, which get code 0 and the first fault as "result".
    QVector<ServiceRequest> requests() const;
    /// Value of a header in the last request for the installer; null: the header was not there, or nobody asked.
    QByteArray installerHeader(const QByteArray& name) const;
    int installerRequests() const; ///< redirected ones count anew

private:
    void takeCall(const httplib::Request& call, httplib::Response& response);
    ServiceReply replyTo(const ServiceRequest& request) const;
    ServiceReply replyToLogin(const ServiceRequest& request) const;
    void sendInstaller(const httplib::Request& request, httplib::Response& response);
    bool pause(int ms); ///< false: the service ends

    const QString m_scheme;
    std::unique_ptr<httplib::Server> m_server;
    int m_port = 0;
    std::thread m_thread;

    mutable std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_changed;
    bool m_ending = false;
    QMap<QString, ServiceReply> m_replies;
    QString m_userName;
    QByteArray m_passwordDigest;
    QJsonObject m_userRecord;
    InstallerFile m_installer;
    QVector<ServiceRequest> m_requests;
    QMap<QByteArray, QByteArray> m_installerHeaders;
    int m_installerRequests = 0;
};
