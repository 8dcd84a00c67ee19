#include "cloud/reply_envelope.h"

#include "cloud/request_log.h"
#include "cloud/text_cipher.h"

#include <QJsonDocument>
#include <QtDebug>

namespace {

constexpr int kSuccess = 1; ///< "code" of an envelope; every other number is a failure

const QString kData = QStringLiteral("data");
const QString kCode = QStringLiteral("code");
const QString kResult = QStringLiteral("result");
const QString kContent = QStringLiteral("content");

ReplyEnvelope failure(const QString& text)
{
    ReplyEnvelope result;
    result.outcome = ReplyEnvelope::Outcome::Failure;
    result.text = text;
    return result;
}

ReplyEnvelope readSuccess(const QJsonObject& envelope)
{
    if (!envelope.value(kResult).isString())
        return failure(QStringLiteral("known error"));
    ReplyEnvelope result;
    result.content = envelope.value(kContent).toObject();
    result.outcome =
        envelope.value(kContent).isObject() ? ReplyEnvelope::Outcome::Success : ReplyEnvelope::Outcome::NoContent;
    return result;
}

/// @param text  what the envelope was read from
ReplyEnvelope readInner(const QJsonObject& envelope, const QString& text)
{
    if (!envelope.value(kCode).isDouble())
        return {};
    // A fraction, or a number that is no int, is 0 and thereby a failure.
    if (envelope.value(kCode).toInt() == kSuccess)
        return readSuccess(envelope);
    return failure(envelope.value(kResult).toString(text));
}

ReplyEnvelope readJson(const QString& text)
{
    QJsonParseError error;
    // Bytes beyond ASCII are thereby encoded a second time: of a plain envelope they arrive altered, and only what
    // comes within "data" is clean.
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError) {
        qDebug() << error.errorString();
        return failure(QStringLiteral("json_parse_error"));
    }
    const QJsonObject envelope = document.object();
    if (!envelope.value(kData).isString())
        return readInner(envelope, text);
    const QString inner = decryptTextUrlSafe(envelope.value(kData).toString());
    logRequestText(inner);
    ReplyEnvelope result = readInner(QJsonDocument::fromJson(inner.toUtf8()).object(), inner);
    result.enciphered = true;
    result.plainText = inner;
    return result;
}

} // namespace

ReplyEnvelope readEnvelope(const QString& text)
{
    ReplyEnvelope result = readJson(text);
    if (!result.enciphered)
        result.plainText = text;
    return result;
}
