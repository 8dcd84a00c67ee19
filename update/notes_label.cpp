#include "update/notes_label.h"

namespace {

constexpr int kShownCharacters = 20000; ///< more than anyone reads, and laid out in half a second
constexpr int kMarksOnLetter = 3;       ///< no language takes more; each layout of a pile takes its height squared
constexpr int kLineWidth = 336;         ///< pixels beside the scroll bar
constexpr ushort kFirstIdeograph = 0x2e80;
constexpr QChar kBreakHere(0x200b); ///< takes no room itself

/// The text without the marks that pile up on one letter. What joins letters is none, and begins no new one.
QString withFewMarks(const QString& text)
{
    QVector<uint> shown;
    shown.reserve(text.size());
    int marks = 0; // on the letter so far
    for (const uint c : text.toUcs4()) {
        if (QChar::isMark(c))
            ++marks;
        else if (QChar::category(c) != QChar::Other_Format)
            marks = 0;
        if (marks <= kMarksOnLetter || !QChar::isMark(c))
            shown << c;
    }
    return QString::fromUcs4(shown.constData(), shown.size());
}

/// The text with places to break within words that are wider than a line.
QString breakable(const QString& text, const QFontMetrics& metrics)
{
    QString result;
    int width = 0; // of the word so far
    for (const QChar c : text) {
        const bool breaksAnyway = c.isSpace() || c.unicode() >= kFirstIdeograph;
        width = breaksAnyway ? 0 : width + metrics.horizontalAdvance(c);
        if (width > kLineWidth) {
            result += kBreakHere;
            width = metrics.horizontalAdvance(c);
        }
        result += c;
    }
    return result;
}

} // namespace

void NotesLabel::setNotes(const QString& notes)
{
    ensurePolished(); // the style sheet gives it another font
    setText(breakable(withFewMarks(notes.left(kShownCharacters)), fontMetrics()));
}

/// A label lays its whole text out at a dozen widths to find the one that it likes, which nobody asks for here.
QSize NotesLabel::sizeHint() const
{
    return {0, 0};
}

QSize NotesLabel::minimumSizeHint() const
{
    return {0, 0};
}
