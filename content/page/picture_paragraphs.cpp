#include "content/page/picture_paragraphs.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextImageFormat>
#include <QTextLayout>

namespace {

/// Neither an item of a list nor indented, and without lines of a fixed height, which would cut the picture.
QTextBlockFormat pictureParagraph(Qt::Alignment alignment)
{
    QTextBlockFormat format;
    format.setAlignment(alignment);
    return format;
}

/// Position of the first picture of a paragraph that begins a further line of it, or -1.
int movedPicture(const QTextBlock& block)
{
    const QString text = block.text();
    if (!text.contains(QChar::ObjectReplacementCharacter))
        return -1;
    block.document()->documentLayout()->blockBoundingRect(block); // lays out what has not been yet
    const QTextLayout& layout = *block.layout();
    for (int i = 1; i < layout.lineCount(); ++i) {
        const int start = layout.lineAt(i).textStart();
        if (start < text.size() && text.at(start) == QChar::ObjectReplacementCharacter)
            return block.position() + start;
    }
    return -1;
}

void separate(QTextDocument& document, int picture)
{
    QTextCursor cursor(&document);
    cursor.setPosition(picture);
    cursor.joinPreviousEditBlock();
    cursor.insertBlock();
    QTextCursor paragraph = cursor;
    cursor.movePosition(QTextCursor::NextCharacter);
    if (!cursor.atBlockEnd())
        cursor.insertBlock();
    paragraph.setBlockFormat(pictureParagraph(paragraph.blockFormat().alignment()));
    cursor.endEditBlock();
}

} // namespace

void insertPictureParagraph(QTextCursor& cursor, const QTextImageFormat& picture)
{
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    if (!cursor.atBlockStart())
        cursor.insertBlock();
    cursor.insertBlock(); // what follows is an item where it was one
    QTextCursor paragraph = cursor;
    paragraph.movePosition(QTextCursor::PreviousBlock);
    paragraph.setBlockFormat(pictureParagraph(cursor.blockFormat().alignment()));
    paragraph.insertImage(picture);
    cursor.endEditBlock();
}

void separateMovedPictures(QTextEdit& editor, int from, int to)
{
    QTextDocument& document = *editor.document();
    int end = to;
    for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() <= end;) {
        const int picture = movedPicture(block);
        if (picture < 0) {
            block = block.next();
            continue;
        }
        const int before = document.characterCount();
        const int caret = editor.textCursor().position();
        separate(document, picture);
        end += document.characterCount() - before;
        if (caret == picture) { // in front of the picture, which has gone down
            QTextCursor kept = editor.textCursor();
            kept.setPosition(caret);
            editor.setTextCursor(kept);
        }
    }
}
