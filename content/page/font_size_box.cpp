#include "content/page/font_size_box.h"

#include "app/widgets/light_palette.h"
#include "content/page/text_runs.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTextDocument>
#include <QTextEdit>

namespace {

constexpr int kWidth = 62; ///< pixels: four digits and the arrow

QString textOf(qreal points)
{
    return points > 0 ? QString::number(qRound(points * 10) / 10.0) : QString();
}

/// 0 for what is no size.
qreal pointsOf(const QString& text)
{
    // Chinese input methods may type digits as wide as ideographs.
    const qreal points = text.normalized(QString::NormalizationForm_KC).trimmed().toDouble();
    return points >= kSmallestPoints && points <= kLargestPoints ? qRound(points * 10) / 10.0 : 0;
}

} // namespace

FontSizeBox::FontSizeBox(QTextEdit& editor, QWidget* parent)
    : QComboBox(parent)
    , m_editor(editor)
{
    setEditable(true);
    setCompleter(nullptr); // it would make 10 of a typed 1
    setInsertPolicy(NoInsert);
    setFocusPolicy(Qt::ClickFocus);
    lineEdit()->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    view()->setPalette(lightPalette()); // a window of its own, which inherits none
    setFixedWidth(kWidth);
    for (const int points : usualPointSizes())
        addItem(QString::number(points));
    setMaxVisibleItems(count());

    connect(this, QOverload<int>::of(&QComboBox::activated), this, &FontSizeBox::applyText);
    connect(&editor, &QTextEdit::cursorPositionChanged, this, &FontSizeBox::followEditor);
    connect(&editor, &QTextEdit::selectionChanged, this, &FontSizeBox::followEditor);
    connect(&editor, &QTextEdit::currentCharFormatChanged, this, &FontSizeBox::followEditor);
    connect(editor.document(), &QTextDocument::contentsChanged, this, &FontSizeBox::followEditor);
    retranslate();
    showSize();
}

void FontSizeBox::followEditor()
{
    if (!hasFocus())
        showSize();
}

void FontSizeBox::showSize()
{
    const QString text = textOf(commonPointSize(m_editor));
    setCurrentIndex(findText(text));
    setEditText(text);
}

void FontSizeBox::applyText()
{
    const qreal points = pointsOf(currentText());
    if (points <= 0 && !currentText().isEmpty()) {
        showSize();
        lineEdit()->selectAll();
        return;
    }
    if (points > 0 && textOf(points) != textOf(commonPointSize(m_editor)))
        setFontSize(m_editor, points);
    leave();
}

void FontSizeBox::leave()
{
    m_editor.setFocus();
    showSize();
}

void FontSizeBox::keyPressEvent(QKeyEvent* event)
{
    const bool opensList = event->modifiers() & Qt::AltModifier;
    switch (opensList ? Qt::Key_unknown : event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        applyText();
        break;
    case Qt::Key_Escape:
        leave();
        break;
    case Qt::Key_Up:
        stepText(1);
        break;
    case Qt::Key_Down:
        stepText(-1);
        break;
    default:
        QComboBox::keyPressEvent(event);
    }
}

/// Nothing is applied yet, or the keyboard would go back to the editor at the first step.
void FontSizeBox::stepText(int direction)
{
    const qreal points = pointsOf(currentText());
    if (points > 0)
        setEditText(textOf(nextPointSize(points, direction)));
    lineEdit()->selectAll();
}

void FontSizeBox::focusInEvent(QFocusEvent* event)
{
    QComboBox::focusInEvent(event);
    // After the click, which puts a caret among the digits.
    QMetaObject::invokeMethod(lineEdit(), &QLineEdit::selectAll, Qt::QueuedConnection);
}

void FontSizeBox::focusOutEvent(QFocusEvent* event)
{
    if (event->reason() != Qt::PopupFocusReason)
        showSize(); // first, for the stock box would choose an item that was typed
    QComboBox::focusOutEvent(event);
}

/// A wheel that turns while the mouse passes by would change the page.
void FontSizeBox::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

void FontSizeBox::retranslate()
{
    setToolTip(tr("字号"));
    setAccessibleName(toolTip());
}

void FontSizeBox::changeEvent(QEvent* event)
{
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
