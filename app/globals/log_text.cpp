#include "app/globals/log_text.h"

#include <QChar>

namespace {

/// As the debug stream of Qt counts them, which lets the two separators pass.
bool isSeen(uint character)
{
    return QChar::isPrint(character) && character != QChar::LineSeparator && character != QChar::ParagraphSeparator;
}

QString escape(QChar unit)
{
    switch (unit.unicode()) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    case '\\':
        return QStringLiteral("\\\\");
    default:
        return QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
}

} // namespace

QString logText(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (int at = 0; at < text.size();) {
        const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        const uint character = isPair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
        const bool stays = isSeen(character) && character != '\\';
        for (const int end = at + (isPair ? 2 : 1); at < end; ++at)
            result += stays ? QString(text[at]) : escape(text[at]);
    }
    return result;
}
