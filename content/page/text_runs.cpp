#include "content/page/text_runs.h"

#include <QFontInfo>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

#include <algorithm>
#include <array>

namespace {

constexpr std::array<int, 21> kPointSizes = {6,  7,  8,  9,  10, 11, 12, 14, 16, 18, 20,
                                             22, 24, 26, 28, 32, 36, 48, 60, 72, 96};

using RunVisitor = std::function<bool(const TextRun&)>;

/// Calls `visit` for every piece between two positions until it returns false.
void visitRuns(const QTextDocument& document, int begin, int end, const RunVisitor& visit)
{
    for (QTextBlock block = document.findBlock(begin); block.isValid() && block.position() < end;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int from = qMax(begin, fragment.position());
            const int to = qMin(end, fragment.position() + fragment.length());
            if (from < to && !visit({from, to, fragment.charFormat()}))
                return;
        }
    }
}

QVector<TextRun> runsBetween(const QTextDocument& document, int begin, int end)
{
    QVector<TextRun> runs;
    visitRuns(document, begin, end, [&runs](const TextRun& run) {
        runs.append(run);
        return true;
    });
    return runs;
}

using SizeChange = std::function<qreal(qreal points)>;

void changeSize(QTextCharFormat& format, const QFont& defaultFont, const SizeChange& change)
{
    setPointSize(format, change(pointSize(format, defaultFont)));
}

// The height of an empty line comes from the format of its paragraph.
void changeEmptyLines(QTextEdit& editor, const QTextCursor& selection, const SizeChange& change)
{
    QTextBlock block = editor.document()->findBlock(selection.selectionStart());
    for (; block.isValid() && block.position() <= selection.selectionEnd(); block = block.next()) {
        if (block.length() > 1)
            continue;
        QTextCharFormat format = block.charFormat();
        changeSize(format, editor.document()->defaultFont(), change);
        QTextCursor(block).setBlockCharFormat(format);
    }
}

void changeFontSize(QTextEdit& editor, const SizeChange& change)
{
    const QFont defaultFont = editor.document()->defaultFont();
    QTextCursor cursor = editor.textCursor();
    if (!cursor.hasSelection()) {
        QTextCharFormat format = editor.currentCharFormat();
        changeSize(format, defaultFont, change);
        editor.setCurrentCharFormat(format);
        return;
    }
    cursor.beginEditBlock();
    for (const TextRun& run : runsBetween(*editor.document(), cursor.selectionStart(), cursor.selectionEnd())) {
        QTextCharFormat format = run.format;
        changeSize(format, defaultFont, change);
        run.select(*editor.document()).setCharFormat(format);
    }
    changeEmptyLines(editor, cursor, change);
    cursor.endEditBlock();
}

} // namespace

QTextCursor TextRun::select(QTextDocument& document) const
{
    QTextCursor cursor(&document);
    cursor.setPosition(begin);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    return cursor;
}

QVector<int> usualPointSizes()
{
    return {kPointSizes.begin(), kPointSizes.end()};
}

QVector<TextRun> textRuns(const QTextDocument& document)
{
    return runsBetween(document, 0, document.characterCount());
}

bool selectionIs(const QTextEdit& editor, const std::function<bool(const QTextCharFormat&)>& predicate)
{
    const QTextCursor cursor = editor.textCursor();
    bool anyText = false;
    bool all = true;
    visitRuns(*editor.document(), cursor.selectionStart(), cursor.selectionEnd(), [&](const TextRun& run) {
        if (run.format.isImageFormat())
            return true;
        anyText = true;
        all = predicate(run.format);
        return all;
    });
    return anyText ? all : predicate(editor.currentCharFormat());
}

Qt::Alignment commonAlignment(const QTextEdit& editor)
{
    const QTextCursor cursor = editor.textCursor();
    QTextBlock block = editor.document()->findBlock(cursor.selectionStart());
    const auto alignmentOf = [](const QTextBlock& of) {
        return of.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
    };
    const Qt::Alignment first = alignmentOf(block) & ~Qt::Alignment{Qt::AlignAbsolute};
    for (; block.isValid() && block.position() <= cursor.selectionEnd(); block = block.next()) {
        if ((alignmentOf(block) & ~Qt::Alignment{Qt::AlignAbsolute}) != first)
            return {};
    }
    return first;
}

qreal pointSize(const QTextCharFormat& format, const QFont& defaultFont)
{
    const QFont font = format.font().resolve(defaultFont);
    const qreal given = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
    if (format.hasProperty(QTextFormat::FontPointSize) || !format.hasProperty(QTextFormat::FontSizeAdjustment))
        return given;
    // HTML's steps small … xx-large, -1 … 4 around the default size.
    static constexpr qreal kFactors[] = {0.7, 0.8, 1.0, 1.2, 1.5, 2.0, 2.4};
    const int step = qBound(-2, format.intProperty(QTextFormat::FontSizeAdjustment), 4);
    return defaultFont.pointSizeF() * kFactors[step + 2];
}

qreal commonPointSize(const QTextEdit& editor)
{
    qreal common = 0;
    const bool shared = selectionIs(editor, [&](const QTextCharFormat& format) {
        const qreal points = pointSize(format, editor.document()->defaultFont());
        common = common > 0 ? common : points;
        return qFuzzyCompare(points, common);
    });
    return shared ? common : 0;
}

void setPointSize(QTextCharFormat& format, qreal points)
{
    format.clearProperty(QTextFormat::FontPixelSize);
    format.clearProperty(QTextFormat::FontSizeAdjustment);
    format.setFontPointSize(points);
}

qreal nextPointSize(qreal points, int direction)
{
    if (direction > 0) {
        const auto above = std::upper_bound(kPointSizes.begin(), kPointSizes.end(), points);
        return above == kPointSizes.end() ? points : *above;
    }
    const auto notBelow = std::lower_bound(kPointSizes.begin(), kPointSizes.end(), points);
    return notBelow == kPointSizes.begin() ? points : *(notBelow - 1);
}

void stepFontSize(QTextEdit& editor, int direction)
{
    changeFontSize(editor, [direction](qreal points) { return nextPointSize(points, direction); });
}

void setFontSize(QTextEdit& editor, qreal points)
{
    changeFontSize(editor, [points](qreal) { return points; });
}
