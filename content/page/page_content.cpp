#include "content/page/page_content.h"

#include "content/page/pasted_page.h"
#include "content/page/sheet_pictures.h"
#include "content/page/text_runs.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QUrl>

namespace {

constexpr ushort kEndOfFrame = 0xfdd1; ///< the character that Qt's documents end a table with

const QString kScheme = QStringLiteral("picture:");

QVector<QTextImageFormat> pictureFormats(const QTextDocument& document)
{
    QVector<QTextImageFormat> formats;
    for (const TextRun& run : textRuns(document)) {
        if (run.format.isImageFormat())
            formats.insert(formats.size(), run.end - run.begin, run.format.toImageFormat());
    }
    return formats;
}

/// The font of a picture, which Qt leaves out of its HTML: what is typed beside the picture looks like it. Only what differs
/// from the page's usual font, as Qt does it with text, so that a page that was read is written as it was.
QString fontStyle(const QTextCharFormat& format, const QFont& usual)
{
    QString style;
    const QString family = format.fontFamilies().toStringList().value(0, format.fontFamily());
    if (!family.isEmpty() && family != usual.family())
        style += QStringLiteral(" font-family:'%1';").arg(family.toHtmlEscaped());
    if (format.hasProperty(QTextFormat::FontPointSize) && !qFuzzyCompare(format.fontPointSize(), usual.pointSizeF()))
        style += QStringLiteral(" font-size:%1pt;").arg(format.fontPointSize());
    if (format.hasProperty(QTextFormat::FontWeight) && format.fontWeight() != usual.weight())
        style += QStringLiteral(" font-weight:%1;").arg(format.fontWeight() * 8); // the CSS scale
    if (format.fontItalic() && !usual.italic())
        style += QStringLiteral(" font-style:italic;");
    return style;
}

/// Marks paragraphs that stand directly below a table: Qt reads them with an empty one in between.
void markBehindTables(QString& html, const QTextDocument& document)
{
    const QString tableEnd = QStringLiteral("</table>");
    const QString next = tableEnd + QStringLiteral("\n<p style=\"");
    int at = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (document.characterAt(block.position() - 1) != QChar(kEndOfFrame))
            continue;
        at = html.indexOf(tableEnd, at);
        if (at < 0)
            return;
        const bool isMarked = block.length() > 1 && html.midRef(at, next.size()) == next;
        if (isMarked)
            html.insert(at + next.size(), QStringLiteral(" -qt-user-state:%1;").arg(kBehindTable));
        at += tableEnd.size();
    }
}

/// Qt's HTML, but for what Qt itself reads otherwise than it was.
QString settled(QString html, const QTextDocument& document)
{
    markBehindTables(html, document);
    html.remove(QChar::Null);
    html = QString::fromUtf8(html.toUtf8()); // in half a character, as some pictures' names are, no pattern matches
    html.remove(QStringLiteral(" style=\"\"")); // of list items that were read before
    // Headings would be large and bold whatever their text is, links underlined, and lines of <pre> come back as others:
    // their text has its own format.
    static const QRegularExpression paragraphs(QStringLiteral("<(/?)(?:h[1-6]|pre)(?=[ >])"));
    static const QRegularExpression links(QStringLiteral("</?a(\\s[^>]*)?>"));
    return html.replace(paragraphs, QStringLiteral("<\\1p")).remove(links);
}

/// In the HTML that Qt writes, a "<" that is no tag is always escaped, and so are quotation marks within attributes.
QString withNamedPictures(const QString& html, const QVector<QTextImageFormat>& formats,
                          const QVector<QImage>& pictures, const QFont& usual)
{
    const QString tag = QStringLiteral("<img src=\"");
    QString result;
    result.reserve(html.size() + 32 * pictures.size());
    int from = 0;
    for (int i = 0; i < pictures.size(); ++i) {
        const int begin = html.indexOf(tag, from);
        if (begin < 0)
            break;
        const int nameEnd = html.indexOf(QLatin1Char('"'), begin + tag.size());
        const int end = html.indexOf(QLatin1Char('>'), nameEnd) + 1;
        const QString style = fontStyle(formats[i], usual);
        const QString picture = tag + kScheme + QString::number(i) + html.midRef(nameEnd, end - nameEnd);
        result += html.midRef(from, begin - from);
        if (!pictures[i].isNull())
            result +=
                style.isEmpty() ? picture : QStringLiteral("<span style=\"") + style + "\">" + picture + "</span>";
        from = end;
    }
    return result + html.midRef(from);
}

/// HTML gives a paragraph's own font for empty paragraphs alone. What is typed once others are emptied looks like what stood
/// there, and so does an empty line at their end.
void restoreParagraphFonts(QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.begin().atEnd() || block.textList()) // the font of an item is that of its number
            continue;
        QTextCharFormat format = (--block.end()).fragment().charFormat();
        format.setObjectType(QTextFormat::NoObject);
        for (const auto property : {QTextFormat::ImageName, QTextFormat::ImageWidth, QTextFormat::ImageHeight})
            format.clearProperty(property);
        QTextCursor(block).mergeBlockCharFormat(format); // which keeps what makes it a cell of a table
    }
}

void removeAll(QTextCursor& cursor)
{
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.setBlockCharFormat(QTextCharFormat());
    cursor.setCharFormat(QTextCharFormat());
}

} // namespace

int pictureIndex(const QString& name)
{
    bool isNumber = false;
    const int index = name.startsWith(kScheme) ? name.midRef(kScheme.size()).toInt(&isNumber) : -1;
    return isNumber ? index : -1;
}

PageContent contentOf(const QTextEdit& editor)
{
    const QTextDocument& document = *editor.document();
    const QVector<QTextImageFormat> formats = pictureFormats(document);
    PageContent content;
    for (const QTextImageFormat& format : formats)
        content.pictures += document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
    content.html = withNamedPictures(settled(document.toHtml("utf-8"), document), formats, content.pictures,
                                     document.defaultFont());
    content.caret = editor.textCursor().position();
    return content;
}

void replacePage(QTextEdit& editor, const PageContent& content)
{
    QTextDocument& document = *editor.document();
    const auto picture = [&content](const QString& name) { return content.pictures.value(pictureIndex(name)); };
    const QTextDocumentFragment page = adoptedText(content.html, picture, document, PictureRoom::of(editor));
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    removeAll(cursor);
    cursor.insertFragment(page);
    restoreParagraphFonts(document);
    cursor.endEditBlock();
    cursor.setPosition(qBound(0, content.caret, document.characterCount() - 1));
    editor.setTextCursor(cursor);
    editor.ensureCursorVisible();
}

void clearPage(QTextEdit& editor)
{
    QTextCursor cursor = editor.textCursor();
    cursor.beginEditBlock();
    removeAll(cursor);
    cursor.endEditBlock();
    editor.setTextCursor(cursor);
}
