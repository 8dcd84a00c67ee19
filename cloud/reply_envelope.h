#pragma once

#include <QJsonObject>
#include <QString>

/// What a reply's body says.
struct ReplyEnvelope
{
    enum class Outcome {
        Success,   ///< `content` is the payload
        Failure,   ///< `text` says why
        NoContent, ///< success without an object as content; calls no handler
        NoCode     ///< no number says whether it is a success; calls no handler
    };

    Outcome outcome = Outcome::NoCode;
    QString text; ///< of a failure
    QJsonObject content;
    bool enciphered = false; ///< it came within "data"
    QString plainText;       ///< the envelope as JSON, deciphered where need be
};

/// Reads the body of a reply as the service wraps it. An inner envelope that is no JSON counts as an empty one. Any
/// thread.
/// @param text  the body, each byte a character
ReplyEnvelope readEnvelope(const QString& text);
