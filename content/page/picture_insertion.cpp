#include "content/page/picture_insertion.h"

#include "content/page/picture_paragraphs.h"
#include "content/page/sheet_pictures.h"

#include <QDebug>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QUrl>

namespace {

// A bare picture format would make the text behind the picture fall back to the document's plain font.
QTextImageFormat formatLikeText(const QTextCharFormat& text, const QString& name)
{
    QTextImageFormat format;
    for (const auto property : {QTextFormat::FontFamily, QTextFormat::FontFamilies, QTextFormat::FontPointSize,
                                QTextFormat::FontWeight, QTextFormat::FontItalic}) {
        if (text.hasProperty(property))
            format.setProperty(property, text.property(property));
    }
    format.setName(name);
    return format;
}

} // namespace

QString pictureName(qint64 secondsSinceEpoch)
{
    return QStringLiteral("capture_image_") + QChar(static_cast<ushort>(secondsSinceEpoch % 65536));
}

bool insertPicture(QTextEdit& editor, const QImage& picture, qint64 secondsSinceEpoch)
{
    qDebug() << "slotsInsertImage" << picture.width() << "textEdit width" << editor.viewport()->width();
    const QString name = pictureName(secondsSinceEpoch);
    QTextDocument* document = editor.document();
    const bool replaces = document->resource(QTextDocument::ImageResource, QUrl(name)).isValid();
    const PictureRoom room = PictureRoom::of(editor);
    const bool added = addSheetPicture(*document, name, picture, PictureFit::Fill, room);
    qDebug() << "image width:" << (added ? room.width : 0);
    if (!added)
        return false;
    if (replaces)
        document->markContentsDirty(0, document->characterCount()); // the earlier picture may change its height
    const QTextCharFormat text = editor.currentCharFormat();
    QTextCursor cursor = editor.textCursor();
    insertPictureParagraph(cursor, formatLikeText(text, name));
    editor.setTextCursor(cursor);
    if (cursor.atBlockEnd()) // what is typed below looks like the text above
        editor.setCurrentCharFormat(text);
    editor.ensureCursorVisible();
    return true;
}
