#include "cloud/digests.h"

#include <QCryptographicHash>

namespace {
const QString kSigningKey = QStringLiteral("5c1e7f20-3b8d-4a96-8e21-7d04b93fa6c2");
} // namespace

QString md5Text(const QString& text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5).toHex());
}

QString requestSignature(const QString& userId, const QString& message, const QString& timestamp)
{
    return md5Text(QStringLiteral("userId=") + userId + QStringLiteral("&msg=") + message + QStringLiteral("&ts=") +
                   timestamp + QStringLiteral("&signKey=") + kSigningKey);
}
