#include "demo/sample_page.h"

#include "content/page/edit_main_window.h"
#include "demo/landscape.h"

#include <QTextCursor>
#include <QTextEdit>
#include <QTextTable>

#include <iterator>

namespace {

constexpr int kTitleSize = 28; ///< points
constexpr int kTextSize = 15;
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

/// A table, whose amounts stand at the right edge of either sheet.
void writeBill(QTextCursor& cursor)
{
    struct Line
    {
        const char* what;
        const char* amount;
        bool bold;
    };
    static const Line lines[] = {
        {"龙井茶  Green tea  × 2", "¥ 36.00", false},
        {"桂花糕  Osmanthus cake", "¥ 18.00", false},
        {"炒面  Fried noodles", "¥ 28.00", false},
        {"合计 Total", "¥ 82.00", true},
    };
    QTextTableFormat format;
    format.setBorder(0);
    format.setCellSpacing(0);
    format.setCellPadding(2);
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    cursor.setBlockFormat(QTextBlockFormat());
    QTextTable* bill = cursor.insertTable(static_cast<int>(std::size(lines)), 2, format);
    for (int row = 0; row < bill->rows(); ++row) {
        const Line& line = lines[row];
        bill->cellAt(row, 0).firstCursorPosition().insertText(QString::fromUtf8(line.what),
                                                              style(kTextSize, line.bold));
        QTextTableCell cell = bill->cellAt(row, 1);
        QTextTableCellFormat place;
        place.setVerticalAlignment(
            QTextCharFormat::AlignBottom); // on the line of the Chinese beside it, which is taller
        cell.setFormat(place);
        QTextCursor amount = cell.firstCursorPosition();
        amount.setBlockFormat(aligned(Qt::AlignRight));
        amount.insertText(QString::fromUtf8(line.amount), style(kTextSize, line.bold));
    }
    cursor = bill->lastCursorPosition();
    cursor.movePosition(QTextCursor::NextBlock);
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
    writeLine(cursor, Qt::AlignLeft, QStringLiteral("今天的湖很安静，山像一幅画。"), style(kTextSize));
    writeLine(cursor, Qt::AlignLeft, QStringLiteral("A still lake, and hills like a painting."),
              style(kTextSize, false, true));
    cursor.setBlockFormat(aligned(Qt::AlignHCenter));
    cursor.insertText(QStringLiteral("谢谢光临  Thank you!"), style(kTextSize + 3, true));
}
