#include "update/installer_name.h"

#include <QRegularExpression>
#include <QVector>

namespace {

const QString kEnding = QStringLiteral(".exe");
const QString kNameless = QStringLiteral("Quillbox_Setup");
constexpr int kLongest = 100; ///< characters before the ending
/// Bytes in UTF-8 before the ending: file systems take 255, and "_tmp.lock" is added meanwhile.
constexpr int kLongestBytes = 255 - 4 - 9;

/// Controls and format characters among them: those turn the text around or hide, so that another ending is seen.
bool maySeparateOrHide(uint c)
{
    static const QString separators = QStringLiteral("/\\:*?\"<>|");
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return c == QChar::ReplacementCharacter || (c < 0x80 && separators.contains(QChar(c)));
    }
}

/// As much of the text as fits, without blanks and dots at either end: Windows drops them behind, and a dot in front
/// hides the file on Linux.
QString fitted(const QVector<uint>& text)
{
    QString name;
    for (const uint c : text) {
        const QString next = name + QString::fromUcs4(&c, 1);
        if (next.size() > kLongest || next.toUtf8().size() > kLongestBytes)
            break;
        name = next;
    }
    static const QRegularExpression ends(QStringLiteral("^[\\s.]+|[\\s.]+$"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    return name.remove(ends);
}

/// Windows opens a device instead, whatever the ending.
bool isDevice(const QString& name)
{
    static const QRegularExpression device(
        QRegularExpression::anchoredPattern(QStringLiteral(
            "(CON|PRN|AUX|NUL|CLOCK\\$|CONIN\\$|CONOUT\\$|(COM|LPT)[0-9\u00b9\u00b2\u00b3]) *(\\..*)?")),
        QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}

} // namespace

QString installerName(const QString& category, const QString& code)
{
    QVector<uint> text = (category + code).toUcs4();
    text.erase(std::remove_if(text.begin(), text.end(), maySeparateOrHide), text.end());
    QString name = fitted(text);
    if (isDevice(name))
        name = fitted((QLatin1Char('_') + name).toUcs4());
    return (name.isEmpty() ? kNameless : name) + kEnding;
}
