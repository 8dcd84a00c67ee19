#include "content/page/page_renderer.h"

#include "content/page/large_picture.h"
#include "content/page/page_editor.h"

#include <QTextCursor>
#include <QTextDocument>

namespace {

// Device pixel ratios of 1.25, 1.5 and the like put a logical row on a whole device row only every few rows; all
// that occur in practice do so every 64.
constexpr int kStripAlignment = 64;

// A strip of this many result rows costs little beside a page that needs strips.
constexpr int kStripRows = 4096;

/// Puts the editor into the shape in which it is grabbed, and back again.
class PrintPose
{
public:
    explicit PrintPose(PageEditor& editor);
    ~PrintPose();
    Q_DISABLE_COPY_MOVE(PrintPose)

private:
    PageEditor& m_editor;
    const int m_width;
    const int m_height;
    const int m_cursorWidth;
    const Qt::ScrollBarPolicy m_horizontal;
    const Qt::ScrollBarPolicy m_vertical;
    const Qt::TextInteractionFlags m_interaction;
    const QString m_placeholder;
};

PrintPose::PrintPose(PageEditor& editor)
    : m_editor(editor)
    , m_width(editor.width())
    , m_height(editor.height())
    , m_cursorWidth(editor.cursorWidth())
    , m_horizontal(editor.horizontalScrollBarPolicy())
    , m_vertical(editor.verticalScrollBarPolicy())
    , m_interaction(editor.textInteractionFlags())
    , m_placeholder(editor.placeholderText())
{
    editor.setCursorWidth(0);
    // A caret of width 0 still shows its direction mark in text that runs both ways.
    editor.setTextInteractionFlags(Qt::NoTextInteraction);
    editor.setPlaceholderText(QString());
    const QSizeF page = editor.document()->size();
    editor.showDesk(false);
    // It paints every pixel itself; else Qt fills the picture twice before.
    editor.setAttribute(Qt::WA_OpaquePaintEvent);
    editor.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    editor.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    editor.setFixedHeight(qMax(1, static_cast<int>(page.height())));
    editor.setFixedWidth(qMax(1, static_cast<int>(page.width())));
    QTextCursor caret = editor.textCursor();
    caret.setPosition(0);
    editor.setTextCursor(caret);
}

// The size stays fixed, as it was before the print.
PrintPose::~PrintPose()
{
    m_editor.setFixedHeight(m_height);
    m_editor.setFixedWidth(m_width);
    m_editor.setHorizontalScrollBarPolicy(m_horizontal);
    m_editor.setVerticalScrollBarPolicy(m_vertical);
    m_editor.setAttribute(Qt::WA_OpaquePaintEvent, false);
    m_editor.showDesk(true);
    m_editor.setPlaceholderText(m_placeholder);
    m_editor.setTextInteractionFlags(m_interaction);
    m_editor.setCursorWidth(m_cursorWidth);
}

/// As QWidget::grab(), into memory that a high page gets sooner.
QImage grabPart(PageEditor& editor, const QRect& part)
{
    const qreal ratio = editor.devicePixelRatioF();
    QImage image = largePicture((QSizeF(part.size()) * ratio).toSize(), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.setDevicePixelRatio(ratio);
    editor.render(&image, QPoint(), part);
    return image;
}

/// A page whose dots are pixels: each strip is painted where it belongs.
QImage grabUnscaled(PageEditor& editor, int stripRows)
{
    QImage image = largePicture(editor.size(), QImage::Format_RGB32);
    for (int first = 0; first < image.height(); first += stripRows) {
        const QRect part(0, first, image.width(), qMin(stripRows, image.height() - first));
        QImage strip(image.scanLine(first), part.width(), part.height(), image.bytesPerLine(), image.format());
        editor.render(&strip, QPoint(), part);
    }
    return image;
}

QImage grabRows(PageEditor& editor, int first, int count, int& top)
{
    const qreal ratio = editor.devicePixelRatioF();
    const int from = static_cast<int>(first / ratio) / kStripAlignment * kStripAlignment;
    const int to = qMin(editor.height(), static_cast<int>((first + count) / ratio) + 1);
    top = qRound(from * ratio);
    return grabPart(editor, QRect(0, from, editor.width(), to - from));
}

} // namespace

QImage renderPage(PageEditor& editor, int widthDots, int plainRows)
{
    const PrintPose pose(editor);
    const QSize page = (QSizeF(editor.size()) * editor.devicePixelRatioF()).toSize();
    QImage image;
    if (page == editor.size() && page.width() == widthDots) {
        image = grabUnscaled(editor, qMin(plainRows, kStripRows));
    } else if (page.height() <= plainRows && sizeAtWidth(page, widthDots).height() <= plainRows) {
        image = grabPart(editor, editor.rect()).scaledToWidth(widthDots, Qt::FastTransformation);
    } else {
        const int stripRows = qBound(1, plainRows * widthDots / page.width(), kStripRows);
        image = scaleInStrips(page, widthDots, stripRows, [&editor](int first, int count, int& top) {
            return grabRows(editor, first, count, top);
        });
    }
    image.setDevicePixelRatio(1);
    return image;
}
