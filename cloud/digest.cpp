#include "cloud/digest.h"

#include <QCryptographicHash>

QString md5Text(const QString& text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5).toHex());
}
