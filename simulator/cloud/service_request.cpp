#include "simulator/cloud/service_request.h"

#include "simulator/cloud/service_crypto.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QRegularExpression>

namespace {

constexpr char kSigningKey[] = "5c1e7f20-3b8d-4a96-8e21-7d04b93fa6c2";
constexpr qint64 kClockSeconds = 300; ///< what the clocks of client and service may be apart

bool matches(const QString& pattern, const QByteArray& text)
{
    const QRegularExpression expression(QRegularExpression::anchoredPattern(pattern));
    return expression.match(QString::fromLatin1(text)).hasMatch();
}

void checkHeaders(ServiceRequest& request)
{
    static const QMap<QByteArray, QByteArray> constant = {
        {"accept-encoding", "gzip, deflate"},
        {"connection", "keep-alive"},
        {"accept", "**/*//*"},
        {"content-type", "application/x-www-form-urlencoded"},
        {"user-agent", "com.quillbox.featherbox.win.app"},
        {"version_code", "100"},
    };
    for (auto header = constant.begin(); header != constant.end(); ++header) {
        if (request.headers.value(header.key()) != header.value())
            request.faults << QStringLiteral("header %1: %2")
                                  .arg(QString::fromLatin1(header.key()),
                                       QString::fromLatin1(request.headers.value(header.key())));
    }
    if (request.headers.value("sysversion").isEmpty())
        request.faults << QStringLiteral("header SysVersion is missing");
    if (!matches(QStringLiteral("\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}"), request.headers.value("uuid")))
        request.faults << QStringLiteral("header UUID is no identifier");
    if (!matches(QStringLiteral("-?[0-9]+"), request.headers.value("userid")))
        request.faults << QStringLiteral("header userId is no number");
}

void checkSignature(ServiceRequest& request, const QByteArray& message)
{
    const QByteArray ts = request.headers.value("ts");
    const QByteArray text =
        "userId=" + request.headers.value("userid") + "&msg=" + message + "&ts=" + ts + "&signKey=" + kSigningKey;
    if (request.headers.value("sign") != md5Hex(text))
        request.faults << QStringLiteral("the signature is wrong");
    if (!matches(QStringLiteral("[0-9]+"), ts) ||
        qAbs(ts.toLongLong() - QDateTime::currentSecsSinceEpoch()) > kClockSeconds)
        request.faults << QStringLiteral("header ts is not the time");
}

/// The wrapper as it is written, with nothing percent-encoded.
void readWrapper(ServiceRequest& request, const QByteArray& message)
{
    static const QByteArray before = "{\n    \"parameter\": \"";
    static const QByteArray after = "\"\n}\n";
    if (!message.startsWith(before) || !message.endsWith(after) || message.size() < before.size() + after.size()) {
        request.faults << QStringLiteral("the body is no wrapper of a parameter");
        return;
    }
    request.cipherText = message.mid(before.size(), message.size() - before.size() - after.size());
    if (!matches(QStringLiteral("[A-Za-z0-9/-]+={0,2}"), request.cipherText))
        request.faults << QStringLiteral("the parameter is not in the alphabet of a form");
}

void readParameters(ServiceRequest& request)
{
    const std::optional<QByteArray> plain = serviceDecipher(request.cipherText);
    if (!plain) {
        request.faults << QStringLiteral("the parameter cannot be deciphered");
        return;
    }
    request.parameterText = QString::fromUtf8(*plain).toLatin1();
    const QJsonDocument document = QJsonDocument::fromJson(request.parameterText);
    request.parameters = document.object();
    if (!document.isObject() || document.toJson() != request.parameterText)
        request.faults << QStringLiteral("the parameters are no indented JSON object");
}

} // namespace

void checkServiceRequest(ServiceRequest& request)
{
    const QByteArray message = request.body.mid(4);
    if (!request.body.startsWith("msg="))
        request.faults << QStringLiteral("the body does not begin with msg=");
    checkHeaders(request);
    checkSignature(request, message);
    readWrapper(request, message);
    if (!request.cipherText.isEmpty())
        readParameters(request);
}
