#include "content/page/pasted_page.h"

#include "content/page/embedded_pictures.h"
#include "content/page/page_scaling.h"
#include "content/page/picture_file.h"
#include "content/page/sheet_pictures.h"
#include "content/page/text_runs.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDebug>
#include <QFontInfo>
#include <QMimeData>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextTable>
#include <QUrl>

namespace {

/// Points that a person could choose. Others would make a page that nobody can read, or that nobody can paint.
constexpr qreal kFontDialogLeast = 1;
constexpr qreal kFontDialogMost = 512;

/// Loads nothing by itself: neither style sheets nor pictures of a page from elsewhere.
class PastedDocument : public QTextDocument
{
protected:
    QVariant loadResource(int, const QUrl&) override { return {}; }
};

/// No file: it need not be one of this computer, and to ask another one for it tells that one who asks.
QImage pictureOfAddress(const QString& address)
{
    const bool holdsIt = address.startsWith(QLatin1String("data:"), Qt::CaseInsensitive);
    return holdsIt ? pictureFromData(dataAddressContent(address.toUtf8())) : QImage();
}

// Named after its content: text copied within a page must not depend on the second in which it is pasted.
QString contentName(const QImage& picture)
{
    const auto* bits = reinterpret_cast<const char*>(picture.constBits());
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray::number(picture.width()));
    hash.addData(bits, static_cast<int>(picture.sizeInBytes()));
    return QStringLiteral("pasted_image_") + QString::fromLatin1(hash.result().toHex());
}

/// Size in pixels at which the text shows a picture; what the text leaves open keeps the picture's proportions.
QSizeF shownSize(const QTextImageFormat& format, const QSizeF& picture)
{
    const bool hasWidth = format.hasProperty(QTextFormat::ImageWidth);
    const bool hasHeight = format.hasProperty(QTextFormat::ImageHeight);
    const qreal width = hasWidth    ? format.width()
                        : hasHeight ? format.height() * picture.width() / picture.height()
                                    : picture.width();
    return {width, hasHeight ? format.height() : width * picture.height() / picture.width()};
}

/// Adds a picture of a pasted text to the page, as large as the text shows it, and at most as wide as the sheet.
/// @return the name under which it was added, empty when it was not
QString addPicture(QTextDocument& page, QImage picture, const QTextImageFormat& format, const PictureRoom& room)
{
    if (picture.isNull())
        return {};
    const QSizeF shown = shownSize(format, picture.size());
    const PictureFit fit = shown.width() > room.width ? PictureFit::Fill : PictureFit::Shrink;
    if (fit == PictureFit::Shrink && shown.height() <= kPaintableRows)
        picture = picture.scaled(shown.toSize());
    const QString name = contentName(picture);
    return addSheetPicture(page, name, picture, fit, room) ? name : QString();
}

/// The address of a picture behind text goes with it: it might name a file of this computer in a page that is passed on.
void clearBackground(QTextFormat& format)
{
    format.clearBackground();
    format.clearProperty(QTextFormat::BackgroundImageUrl);
}

void adoptPicture(const TextRun& run, const QImage& picture, QTextDocument& pasted, QTextDocument& page,
                  const PictureRoom& room)
{
    QTextCursor cursor = run.select(pasted);
    QTextImageFormat format = run.format.toImageFormat();
    const QString name = addPicture(page, picture, format, room);
    if (name.isEmpty()) {
        cursor.removeSelectedText();
        return;
    }
    format.clearProperty(QTextFormat::ImageWidth);
    format.clearProperty(QTextFormat::ImageHeight);
    format.clearForeground(); // what is typed behind the picture takes them over
    clearBackground(format);
    format.setName(name);
    cursor.setCharFormat(format);
}

void clearColours(QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        QTextBlockFormat format = block.blockFormat();
        clearBackground(format);
        cursor.setBlockFormat(format);
        if (QTextTable* table = cursor.currentTable()) {
            QTextTableCell cell = table->cellAt(cursor);
            QTextCharFormat cellFormat = cell.format();
            clearBackground(cellFormat);
            cell.setFormat(cellFormat);
            QTextTableFormat tableFormat = table->format();
            clearBackground(tableFormat);
            table->setFormat(tableFormat);
        }
    }
}

// Behind a table whose last cell is empty Qt puts no paragraph; the one before is that cell's, which cannot be joined.
void joinBehindTables(QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.userState() != kBehindTable)
            continue;
        QTextCursor before(block.previous());
        if (before.block().length() == 1 && !before.currentTable()) {
            const QTextBlockFormat format = block.blockFormat();
            before.deleteChar();
            before.setBlockFormat(format);
            block = before.block();
        }
        block.setUserState(-1);
    }
}

void plainInk(const TextRun& run, QTextDocument& pasted)
{
    QTextCharFormat format = run.format;
    format.clearForeground();
    clearBackground(format);
    const bool sized = format.hasProperty(QTextFormat::FontPixelSize) ||
                       format.hasProperty(QTextFormat::FontPointSize) ||
                       format.hasProperty(QTextFormat::FontSizeAdjustment);
    const qreal points = sized ? pointSize(run.format, pasted.defaultFont()) : pasted.defaultFont().pointSizeF();
    setPointSize(format, qBound(kFontDialogLeast, points, kFontDialogMost));
    run.select(pasted).setCharFormat(format);
}

} // namespace

bool isPictureOnly(const QMimeData& source)
{
    if (!source.hasImage())
        return false;
    QString words = source.text();
    if (source.hasHtml()) {
        PastedDocument document;
        document.setHtml(source.html());
        words = document.toPlainText();
    }
    return words.remove(QChar::ObjectReplacementCharacter).trimmed().isEmpty();
}

QTextDocumentFragment pastedText(const QString& html, QTextDocument& page, const PictureRoom& room)
{
    return adoptedText(html, pictureOfAddress, page, room);
}

QTextDocumentFragment adoptedText(const QString& html, const PictureSource& pictures, QTextDocument& page,
                                  const PictureRoom& room)
{
    PastedDocument pasted;
    pasted.setUndoRedoEnabled(false);
    pasted.setDefaultFont(page.defaultFont());
    pasted.setHtml(html);
    joinBehindTables(pasted);
    clearColours(pasted);
    const QVector<TextRun> runs = textRuns(pasted);
    // From the end, so that a picture that is left out does not move the runs still to come.
    for (int i = runs.size() - 1; i >= 0; --i) {
        if (runs[i].format.isImageFormat())
            adoptPicture(runs[i], pictures(runs[i].format.toImageFormat().name()), pasted, page, room);
        else
            plainInk(runs[i], pasted);
    }
    return QTextDocumentFragment(&pasted);
}

QString copiedHtml(const QTextDocumentFragment& part, const QTextDocument& page)
{
    PastedDocument copy;
    copy.setUndoRedoEnabled(false);
    copy.setDefaultFont(page.defaultFont());
    QTextCursor(&copy).insertFragment(part);
    for (const TextRun& run : textRuns(copy)) {
        if (!run.format.isImageFormat())
            continue;
        QTextImageFormat format = run.format.toImageFormat();
        const QVariant picture = page.resource(QTextDocument::ImageResource, QUrl(format.name()));
        QBuffer png;
        picture.value<QImage>().save(&png, "PNG");
        format.setName(QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.data().toBase64()));
        run.select(copy).setCharFormat(format);
    }
    return copy.toHtml();
}
