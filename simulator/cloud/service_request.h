#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

/// One call as it reached the service.
struct ServiceRequest
{
    QString call;                         ///< what follows the service's address, for example "login"
    QMap<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;                      ///< as it came
    QByteArray cipherText;                ///< the one member of the body's wrapper
    QByteArray parameterText;             ///< deciphered, and the outer of its two UTF-8 encodings undone
    QJsonObject parameters;               ///< parsed from it
    QStringList faults;                   ///< what a call may not be like; empty for a good one
};

/// Deciphers the body, fills what is empty in the request, and holds it against everything that a call promises:
/// the constant headers, the bytes of the body, the time (within five minutes) and the signature. Any thread.
void checkServiceRequest(ServiceRequest& request);
