#include "content/page/pasted_page.h"

#include "content/page/page_scaling.h"
#include "content/page/text_runs.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFontInfo>
#include <QImageReader>
#include <QMimeData>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextTable>
#include <QUrl>

namespace {

QImage pictureInAddress(const QUrl& url)
{
    if (url.isLocalFile())
        return readPicture(url.toLocalFile());
    if (url.scheme().compare(QLatin1String("data"), Qt::CaseInsensitive) != 0)
        return {};
    const QByteArray content = url.toEncoded(QUrl::FullyEncoded);
    const int comma = content.indexOf(',');
    const QByteArray body = QByteArray::fromPercentEncoding(content.mid(comma + 1));
    const bool base64 = content.left(comma).endsWith(";base64");
    return QImage::fromData(base64 ? QByteArray::fromBase64(body) : body);
}

/// Loads nothing by itself: neither style sheets nor pictures of a page from elsewhere.
class PastedDocument : public QTextDocument
{
protected:
    QVariant loadResource(int, const QUrl&) override { return {}; }
};

// Named after its content: text copied within a page must not depend on the second in which it is pasted.
QString addPicture(QTextDocument& page, const QImage& picture)
{
    const auto* bits = reinterpret_cast<const char*>(picture.constBits());
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray::number(picture.width()));
    hash.addData(bits, static_cast<int>(picture.sizeInBytes()));
    QString name = QStringLiteral("pasted_image_") + QString::fromLatin1(hash.result().toHex());
    page.addResource(QTextDocument::ImageResource, QUrl(name), picture);
    return name;
}

void adoptPicture(const TextRun& run, QTextDocument& pasted, QTextDocument& page, int widthPx)
{
    QTextCursor cursor = run.select(pasted);
    QTextImageFormat format = run.format.toImageFormat();
    QImage picture = pictureInAddress(QUrl(format.name()));
    const qreal shownWidth = format.hasProperty(QTextFormat::ImageWidth) ? format.width() : picture.width();
    if (shownWidth > widthPx) {
        picture = scaleToWidth(picture, widthPx);
        format.clearProperty(QTextFormat::ImageWidth);
        format.clearProperty(QTextFormat::ImageHeight);
    }
    if (picture.isNull()) {
        cursor.removeSelectedText();
        return;
    }
    picture.setDevicePixelRatio(1);
    format.clearForeground(); // what is typed behind the picture takes them over
    format.clearBackground();
    format.setName(addPicture(page, picture));
    cursor.setCharFormat(format);
}

void clearColours(QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        QTextBlockFormat format = block.blockFormat();
        format.clearBackground();
        cursor.setBlockFormat(format);
        if (QTextTable* table = cursor.currentTable()) {
            QTextTableCell cell = table->cellAt(cursor);
            QTextCharFormat cellFormat = cell.format();
            cellFormat.clearBackground();
            cell.setFormat(cellFormat);
            QTextTableFormat tableFormat = table->format();
            tableFormat.clearBackground();
            table->setFormat(tableFormat);
        }
    }
}

void plainInk(const TextRun& run, QTextDocument& pasted)
{
    QTextCharFormat format = run.format;
    format.clearForeground();
    format.clearBackground();
    const bool sized = format.hasProperty(QTextFormat::FontPixelSize) ||
                       format.hasProperty(QTextFormat::FontPointSize) ||
                       format.hasProperty(QTextFormat::FontSizeAdjustment);
    setPointSize(format, sized ? pointSize(run.format, pasted.defaultFont()) : pasted.defaultFont().pointSizeF());
    run.select(pasted).setCharFormat(format);
}

} // namespace

QImage readPicture(const QString& path)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    return reader.read();
}

bool isPictureOnly(const QMimeData& source)
{
    if (!source.hasImage())
        return false;
    QString words = source.text();
    if (source.hasHtml())
        words = QTextDocumentFragment::fromHtml(source.html()).toPlainText();
    return words.remove(QChar::ObjectReplacementCharacter).trimmed().isEmpty();
}

QTextDocumentFragment pastedText(const QString& html, QTextDocument& page, int widthPx)
{
    PastedDocument pasted;
    pasted.setUndoRedoEnabled(false);
    pasted.setDefaultFont(page.defaultFont());
    pasted.setHtml(html);
    clearColours(pasted);
    const QVector<TextRun> runs = textRuns(pasted);
    // From the end, so that a picture that is left out does not move the runs still to come.
    for (int i = runs.size() - 1; i >= 0; --i) {
        if (runs[i].format.isImageFormat())
            adoptPicture(runs[i], pasted, page, widthPx);
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
