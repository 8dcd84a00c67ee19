#include "cloud/base_api.h"

#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/dialogs/qx_message_dialog.h"
#include "app/globals/log_text.h"
#include "app/globals/settings.h"
#include "cloud/client_identity.h"
#include "cloud/digests.h"
#include "cloud/reply_envelope.h"
#include "cloud/request_log.h"
#include "cloud/service_address.h"
#include "cloud/text_cipher.h"
#include "update/network_release.h"

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSettings>
#include <QSysInfo>
#include <QTimer>
#include <QUrl>
#include <QtDebug>

namespace {

constexpr int kSilenceLimitMs = 15000;
constexpr int kNoConnection = -1;

/// Reads the bytes up to the first zero as one character each.
QString latin1Text(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.constData());
}

/// 304 and 306 lead nowhere.
bool isRedirect(int httpStatus)
{
    switch (httpStatus) {
    case 301:
    case 302:
    case 303:
    case 305:
    case 307:
    case 308:
        return true;
    default:
        return false;
    }
}

} // namespace

BaseApi::BaseApi(QObject* parent)
    : QObject(parent)
    , m_manager(std::make_unique<QNetworkAccessManager>())
    , m_userId(QSettings(kOrganization, kApplication).value(QStringLiteral("userId"), 0).toInt())
{
    setConstantHeaders();
    m_request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    setSilenceLimitMs(kSilenceLimitMs);
    connect(m_manager.get(), &QNetworkAccessManager::finished, this, &BaseApi::onRequestFinished);
}

BaseApi::~BaseApi()
{
    disconnect(m_manager.get(), nullptr, this, nullptr);
    releaseNetwork(m_manager.release()); // whose thread may still be busy with what the service sends
    closeBusy();
}

void BaseApi::setConstantHeaders()
{
    // Named by us, compression is no longer undone by Qt: such a reply does not parse.
    m_request.setRawHeader("Accept-Encoding", "gzip, deflate");
    m_request.setRawHeader("Connection", "keep-alive");
    m_request.setRawHeader("Accept", "**/*//*"); // no media range (docs/architecture.md, "Kept behaviour")
    m_request.setRawHeader("Content-Type", "application/x-www-form-urlencoded");
    m_request.setRawHeader("User-Agent", kClientIdentity);
    m_request.setRawHeader("VERSION_CODE", QByteArray::number(kClientVersionCode));
    m_request.setRawHeader("SysVersion", QSysInfo::prettyProductName().toLocal8Bit());
    m_request.setRawHeader("UUID", g_uuid.toLocal8Bit());
}

void BaseApi::setShowProgress(bool show)
{
    m_showProgress = show;
}

void BaseApi::setSilenceLimitMs(int ms)
{
    m_request.setTransferTimeout(ms);
}

void BaseApi::setTimeLimitMs(int ms)
{
    m_timeLimitMs = ms;
}

void BaseApi::sendRequest(const QString& apiName, const QJsonObject& parameters)
{
    sendRequest(apiName, QJsonDocument(parameters));
}

void BaseApi::sendRequest(const QString& apiName, const QJsonArray& parameters)
{
    sendRequest(apiName, QJsonDocument(parameters));
}

void BaseApi::sendRequest(const QString& apiName, const QJsonDocument& parameters)
{
    // Its UTF-8 bytes count as characters: what is not ASCII goes out encoded twice, as the service expects it.
    const QString parameterText = latin1Text(parameters.toJson());
    logRequestText(parameterText);
    const QString cipher = encryptTextUrlSafe(parameterText);
    logRequestText(cipher);
    emit signalSent(apiName, QString::fromUtf8(parameters.toJson()), cipher);
    const QJsonObject wrapper{{QStringLiteral("parameter"), cipher}};
    const QString message = QString::fromUtf8(QJsonDocument(wrapper).toJson());
    const QString timestamp = QString::number(QDateTime::currentSecsSinceEpoch());
    logRequestText(timestamp);
    const QString userId = QString::number(m_userId);

    m_request.setRawHeader("ts", timestamp.toLatin1());
    m_request.setRawHeader("userId", userId.toLatin1());
    m_request.setRawHeader("sign", requestSignature(userId, message, timestamp).toLatin1());
    // Not percent-encoded, although it is a form: the service reads the text as it stands.
    doPost(apiName, QByteArray("msg=") + message.toUtf8());
}

void BaseApi::doPost(const QString& apiName, const QByteArray& body)
{
    qDebug() << "doPost";
    m_method = Post;
    m_request.setUrl(QUrl(serviceAddress() + apiName));
    start(m_manager->post(m_request, body));
    if (m_showProgress)
        showBusy();
}

void BaseApi::doGet(const QString& apiName)
{
    qDebug() << "doGet";
    m_method = Get;
    m_request.setUrl(QUrl(serviceAddress() + apiName));
    start(m_manager->get(m_request));
}

void BaseApi::start(QNetworkReply* reply)
{
    reply->setReadBufferSize(kLongestReplyBytes + 1); // no more is taken from the connection
    connect(reply, &QNetworkReply::readyRead, reply, [reply] {
        if (reply->bytesAvailable() > kLongestReplyBytes)
            reply->abort();
    });
    QTimer::singleShot(m_timeLimitMs, reply, &QNetworkReply::abort);
}

void BaseApi::showBusy()
{
    closeBusy();
    m_progressDialog = new ProgressCatRunningDialog;
    m_progressDialog->show();
}

void BaseApi::closeBusy()
{
    if (m_progressDialog)
        m_progressDialog->close();
}

void BaseApi::onArray(int httpStatus, const QJsonArray& content)
{
    Q_UNUSED(httpStatus)
    Q_UNUSED(content)
}

void BaseApi::onSuccess(int httpStatus, const QJsonObject& content)
{
    Q_UNUSED(httpStatus)
    Q_UNUSED(content)
}

void BaseApi::onFailed(int httpStatus, const QString& message)
{
    auto* dialog = new QXMessageDialog;
    dialog->setMessage(httpStatus, message);
    dialog->show();
}

void BaseApi::onRequestFinished(QNetworkReply* reply)
{
    if (m_showProgress)
        closeBusy();
    qDebug().noquote()
        << "=================== start ====================== onRequestFinished"
        << QStringLiteral("QUrl(\"%1\")").arg(logText(reply->url().toDisplayString())); // or of a redirect
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const int httpStatus = status.isValid() ? status.toInt() : kNoConnection;
    const QString text = status.isValid() ? latin1Text(reply->readAll()) : tr("请检查网络链接是否正常");
    if (reply->error() != QNetworkReply::NoError) {
        onFailed(httpStatus, text);
        emit signalReceived(httpStatus, text, {});
    } else {
        handleText(httpStatus, isRedirect(httpStatus) ? QStringLiteral("isHttpRedirect") : text);
    }
    qDebug() << "====================  end  ===================== onRequestFinished";
    reply->deleteLater();
}

void BaseApi::handleText(int httpStatus, const QString& text)
{
    logRequestText(text);
    const ReplyEnvelope envelope = readEnvelope(text);
    if (envelope.outcome == ReplyEnvelope::Outcome::Success)
        onSuccess(httpStatus, envelope.content);
    else if (envelope.outcome == ReplyEnvelope::Outcome::Failure)
        onFailed(httpStatus, envelope.text);
    emit signalReceived(httpStatus, envelope.plainText, envelope.enciphered ? text : QString());
}
