#include "cloud/request_log.h"

#include "app/globals/log_text.h"

#include <QtDebug>

namespace {
constexpr int kLoggedCharacters = 16 * 1024;
} // namespace

void logRequestText(const QString& text)
{
    qDebug().noquote() << logText(text.left(kLoggedCharacters));
    if (text.size() > kLoggedCharacters)
        qDebug() << "... of" << text.size() << "characters";
}
