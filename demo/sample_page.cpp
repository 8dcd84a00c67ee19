#include "demo/sample_page.h"

#include "content/page/edit_main_window.h"
#include "demo/landscape.h"

#include <QTextCursor>
#include <QTextEdit>

namespace {

constexpr int kTitleSize = 28; ///< points
constexpr int kTextSize = 17;
constexpr int kSmallSize = 14;

QTextCharFormat style(int pointSize, bool bold = false, bool italic = false)
{
    QTextCharFormat format;
    format.setFontPointSize(pointSize);
    format.setFontWeight(bold ? QFont::Bold : QFont::Normal);
    format.setFontItalic(italic);
    return format;
}

QTextBlockFormat aligned(Qt::Alignment alignment)
{
    QTextBlockFormat format;
    format.setAlignment(alignment);
    return format;
}

/// Writes text and begins the next paragraph.
void writeLine(QTextCursor& cursor, Qt::Alignment alignment, const QString& text, const QTextCharFormat& format)
{
    cursor.setBlockFormat(aligned(alignment));
    cursor.insertText(text, format);
    cursor.insertBlock();
}

void writeHeading(QTextCursor& cursor)
{
    writeLine(cursor, Qt::AlignHCenter, QStringLiteral("湖边小店"), style(kTitleSize, true));
    writeLine(cursor, Qt::AlignHCenter, QStringLiteral("The Lakeside Café"), style(kTextSize + 3, false, true));
    writeLine(cursor, Qt::AlignHCenter, QStringLiteral("2026-11-24  18:32   桌号 Table 7"), style(kSmallSize));
}

void writeBill(QTextCursor& cursor)
{
    struct Line
    {
        const char* text;
        bool bold;
    };
    static const Line lines[] = {
        {"龙井茶  Green tea  × 2\t¥ 36.00", false},
        {"桂花糕  Osmanthus cake\t¥ 18.00", false},
        {"炒面  Fried noodles\t¥ 28.00", false},
        {"合计 Total\t¥ 82.00", true},
    };
    QTextBlockFormat block = aligned(Qt::AlignLeft);
    block.setTabPositions({QTextOption::Tab(568, QTextOption::RightTab)});
    block.setTopMargin(4);
    for (const Line& line : lines) {
        cursor.setBlockFormat(block);
        cursor.insertText(QString::fromUtf8(line.text), style(kTextSize, line.bold));
        cursor.insertBlock();
    }
    cursor.setBlockFormat(QTextBlockFormat());
}

} // namespace

void composeSamplePage(EditMainWindow& page)
{
    QTextEdit* editor = page.editor();
    QTextCursor cursor = editor->textCursor();
    writeHeading(cursor);
    writeBill(cursor);
    editor->setTextCursor(cursor);
    page.slotsInsertImage(landscapePicture(QSize(640, 400)));

    cursor = editor->textCursor();
    cursor.insertBlock();
    writeLine(cursor, Qt::AlignLeft, QStringLiteral("今天的湖很安静，山像一幅画。"), style(kTextSize));
    writeLine(cursor, Qt::AlignLeft, QStringLiteral("A still lake, and hills like a painting."),
              style(kTextSize, false, true));
    cursor.setBlockFormat(aligned(Qt::AlignHCenter));
    cursor.insertText(QStringLiteral("谢谢光临  Thank you!"), style(kTextSize + 3, true));
}
