#pragma once

#include <QFont>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QVector>

#include <functional>

class QTextDocument;
class QTextEdit;

constexpr qreal kSmallestPoints = 6; ///< of sizes that can be typed
constexpr qreal kLargestPoints = 200;

/// The sizes in points that are usually chosen from, in order.
QVector<int> usualPointSizes();

/// A piece of text of one format: what a selection of several formats is made of.
struct TextRun
{
    int begin = 0; ///< position in the document
    int end = 0;   ///< behind the last character
    QTextCharFormat format;

    QTextCursor select(QTextDocument& document) const;
};

/// Runs of a whole document, pictures among them, in order.
QVector<TextRun> textRuns(const QTextDocument& document);

/// True when every piece of text in the selection satisfies `predicate`; without a selection, when the text that is
/// typed next does. Pictures do not count.
bool selectionIs(const QTextEdit& editor, const std::function<bool(const QTextCharFormat&)>& predicate);

/// Alignment that all paragraphs of the selection share (one of left, right, centre, justify), or 0.
Qt::Alignment commonAlignment(const QTextEdit& editor);

/// Size in points, also where the format gives pixels or an HTML size step.
qreal pointSize(const QTextCharFormat& format, const QFont& defaultFont);

/// Size in points that all text of the selection shares, or that text typed next gets; 0 for a mixed selection.
qreal commonPointSize(const QTextEdit& editor);

/// Sets the size in points and removes what would compete with it.
void setPointSize(QTextCharFormat& format, qreal points);

/// The next usual size above (direction > 0) or below; the smallest and the largest lead to themselves.
qreal nextPointSize(qreal points, int direction);

/// Moves the selection, each size in it by its own step, or the text typed next by one usual size. One undo step.
void stepFontSize(QTextEdit& editor, int direction);

/// Gives the selection one size, or the text typed next. One undo step.
void setFontSize(QTextEdit& editor, qreal points);
