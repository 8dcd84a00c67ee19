#include "content/page/page_editor.h"

#include "app/globals/sheet_model.h"
#include "content/page/pasted_page.h"
#include "content/page/picture_file.h"
#include "content/page/picture_insertion.h"
#include "content/page/picture_paragraphs.h"
#include "content/page/sheet_pictures.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QUrl>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

// An own style sheet outranks those of the windows around it, whatever their selectors; a palette would not.
const char kPaperStyle[] = R"(
PageEditor { background: white; color: black; border: none; border-image: none; border-radius: 0;
             padding: 0; margin: 0; selection-background-color: #b5d5fb; selection-color: black; }
QScrollBar { background: white; border: none; margin: 0; }
QScrollBar:vertical { width: 14px; }
QScrollBar:horizontal { height: 14px; }
QScrollBar::handle { background: #c9ced4; border: none; border-radius: 4px; margin: 3px; }
QScrollBar::handle:hover { background: #a9b0b8; }
QScrollBar::handle:disabled { background: white; }
QScrollBar::handle:vertical { min-height: 30px; }
QScrollBar::handle:horizontal { min-width: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; border: none; }
QScrollBar::add-page, QScrollBar::sub-page { background: none; }
)";

// Marks what was copied from a page, whose pictures keep their size when they come back.
const QString kPageFormat = QStringLiteral("application/x-quillbox-page");

// Pictures are narrower than the viewport by the scroll bar's millimetres, 2 and more on usual screens. With this
// margin on both sides they just fit, and no horizontal scroll bar turns up.
constexpr qreal kDocumentMargin = 1;

constexpr int kTopPadding = 4;   // on the screen only
constexpr int kPaperMargin = 12; // of the paper beside what the head reaches
const QColor kDesk(0xee, 0xf1, 0xf4);
const QColor kPaperEdge(0xd3, 0xd8, 0xde);

bool hasLocalFile(const QMimeData& source)
{
    const QList<QUrl> urls = source.urls();
    return std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
}

bool holdsPicture(const QTextCursor& selection)
{
    return selection.selectedText().contains(QChar::ObjectReplacementCharacter);
}

} // namespace

PageEditor::PageEditor(QWidget* parent)
    : QTextEdit(parent)
    , m_sheetWidth(sheetModel().widthDots())
{
    setStyleSheet(QString::fromLatin1(kPaperStyle));
    setFrameShape(QFrame::NoFrame);
    // Always there, so that neither the line breaks nor the width of pictures depend on the length of the page.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    document()->setUndoRedoEnabled(false); // else the margin is the first thing that can be undone
    document()->setDocumentMargin(kDocumentMargin);
    document()->setUndoRedoEnabled(true);
    setLineWrapMode(QTextEdit::FixedPixelWidth);
    setLineWrapColumnOrWidth(m_sheetWidth);
    connect(document(), &QTextDocument::contentsChange, this, &PageEditor::noteChange);
    connect(document(), &QTextDocument::contentsChanged, this, &PageEditor::separatePictures);
}

void PageEditor::setSheetWidth(int width)
{
    if (width == m_sheetWidth)
        return;
    m_sheetWidth = width;
    setLineWrapColumnOrWidth(width);
    layOutSheet();
    showSheetPictures(*document(), width);
    if (!document()->isRedoAvailable())
        separateMovedPictures(*this, 0, document()->characterCount());
    ensureCursorVisible();
}

void PageEditor::showDesk(bool shown)
{
    m_deskShown = shown;
    layOutSheet();
}

void PageEditor::layOutSheet()
{
    const int beside = qMax(0, width() - verticalScrollBar()->sizeHint().width() - m_sheetWidth);
    if (m_deskShown)
        setViewportMargins(beside / 2, kTopPadding, beside - beside / 2, 0);
    else
        setViewportMargins({});
    update();
}

void PageEditor::resizeEvent(QResizeEvent* event)
{
    layOutSheet();
    QTextEdit::resizeEvent(event);
}

bool PageEditor::event(QEvent* event)
{
    const bool handled = QTextEdit::event(event);
    if (event->type() == QEvent::Paint) // of what the viewport and the bars leave
        paintDesk();
    return handled;
}

void PageEditor::paintDesk()
{
    QPainter painter(this);
    if (!m_deskShown) { // all is paper, and a high one: what would be painted over costs as much as the paper
        painter.fillRect(rect(), Qt::white);
        return;
    }
    const QRect paper = viewport()->geometry().adjusted(-kPaperMargin, 0, kPaperMargin, 0);
    painter.fillRect(rect(), kDesk);
    painter.fillRect(paper.left() - 1, 0, paper.width() + 2, height(), kPaperEdge);
    painter.fillRect(paper.left(), 0, paper.width(), height(), Qt::white);
}

void PageEditor::noteChange(int position, int removed, int added)
{
    Q_UNUSED(removed)
    const int end = position + added;
    m_changedFrom = m_changedFrom < 0 ? position : qMin(m_changedFrom, position);
    m_changedTo = qMax(m_changedTo, end);
}

/// Each change that this makes is noted and looked at again, until there is nothing left to be done.
void PageEditor::separatePictures()
{
    // What an undo brings back is left as it was, or the undo would never get any further.
    if (m_changedFrom < 0 || document()->isRedoAvailable())
        return;
    const int from = std::exchange(m_changedFrom, -1);
    const int to = std::exchange(m_changedTo, -1);
    separateMovedPictures(*this, from, to);
}

/// Beside a picture each letter is an undo step of its own, which separatePictures() can add to.
void PageEditor::keyPressEvent(QKeyEvent* event)
{
    const bool types = !event->text().isEmpty() && event->text().at(0).isPrint();
    QTextCursor step = textCursor();
    if (!types || !step.block().text().contains(QChar::ObjectReplacementCharacter)) {
        QTextEdit::keyPressEvent(event);
        return;
    }
    step.beginEditBlock();
    QTextEdit::keyPressEvent(event);
    step.endEditBlock();
}

bool PageEditor::canInsertFromMimeData(const QMimeData* source) const
{
    return source->hasImage() || QTextEdit::canInsertFromMimeData(source);
}

void PageEditor::insertFromMimeData(const QMimeData* source)
{
    if (isReadOnly())
        return;
    if (hasLocalFile(*source)) {
        insertPictureFiles(source->urls());
    } else if (isPictureOnly(*source) && !source->hasFormat(kPageFormat)) {
        insertPicture(*this, qvariant_cast<QImage>(source->imageData()), QDateTime::currentSecsSinceEpoch());
    } else if (source->hasHtml()) {
        QTextCursor cursor = textCursor();
        cursor.insertFragment(pastedText(source->html(), *document(), PictureRoom::of(*this)));
        setTextCursor(cursor); // with the column that Up and Down keep
        ensureCursorVisible();
    } else if (source->hasText()) {
        QMimeData words; // alone: Qt knows one more format of rich text, and would fetch what that names
        words.setText(source->text());
        QTextEdit::insertFromMimeData(&words);
    }
}

void PageEditor::insertPictureFiles(const QList<QUrl>& urls)
{
    // Files that come together count as a second apart, else all would share one name and show the last picture.
    qint64 seconds = QDateTime::currentSecsSinceEpoch();
    QTextCursor step = textCursor();
    step.beginEditBlock();
    for (const QUrl& url : urls) {
        const QImage picture = url.isLocalFile() ? readPicture(url.toLocalFile()) : QImage();
        if (!picture.isNull() && insertPicture(*this, picture, seconds))
            ++seconds;
    }
    step.endEditBlock();
}

QMimeData* PageEditor::createMimeDataFromSelection() const
{
    if (!holdsPicture(textCursor()))
        return QTextEdit::createMimeDataFromSelection();
    const QTextDocumentFragment part(textCursor());
    auto* mime = new QMimeData;
    mime->setText(part.toPlainText().remove(QChar::ObjectReplacementCharacter));
    mime->setHtml(copiedHtml(part, *document()));
    mime->setData(kPageFormat, QByteArrayLiteral("1"));
    if (textCursor().selectedText().length() == 1) {
        const QString name = textCursor().charFormat().toImageFormat().name();
        mime->setImageData(document()->resource(QTextDocument::ImageResource, QUrl(name)));
    }
    return mime;
}

PageHolder::PageHolder(PageEditor* editor, QWidget* parent)
    : QWidget(parent)
    , m_editor(editor)
{
    editor->setParent(this);
    setFocusProxy(editor);
    setFocusPolicy(Qt::ClickFocus);
    setObjectName(QStringLiteral("pageHolder"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("#pageHolder { background: white; border: none; border-image: none; }"));
    setCursor(Qt::ArrowCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize PageHolder::sizeHint() const
{
    return {600, 340};
}

void PageHolder::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_editor->setGeometry(rect());
}

void PageHolder::wheelEvent(QWheelEvent* event)
{
    QCoreApplication::sendEvent(m_editor->verticalScrollBar(), event);
}
