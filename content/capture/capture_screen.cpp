#include "content/capture/capture_screen.h"

#include "content/capture/capture_screen_window.h"
#include "content/capture/capture_selection.h"

#include <QBuffer>
#include <QCloseEvent>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>

namespace {

const QColor kVeil(0, 0, 0, 100);
const QColor kHintGround(0x2b, 0x2f, 0x36, 225); // readable over whatever the screen showed

QString proposedFileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation) + QStringLiteral("/quillbox_") +
           QString::number(QDateTime::currentSecsSinceEpoch()) + QStringLiteral(".png");
}

// JPEG even where the name ends in ".png" (docs/architecture.md, "Kept behaviour").
bool writeJpeg(const QString& path, const QImage& picture)
{
    QBuffer buffer;
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "JPG"))
        return false;
    QSaveFile file(path); // a full disk leaves an older file of that name whole
    file.setDirectWriteFallback(true);
    return file.open(QIODevice::WriteOnly) && file.write(buffer.data()) == buffer.size() && file.commit();
}

} // namespace

CaptureScreen::CaptureScreen(QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
    , m_toolBar(new CaptureScreenWindow(this))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    // The main window shrinks to nothing for the time of a capture and is no reason to quit when the overlay goes.
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    m_toolBar->hide();
    connect(m_toolBar, &CaptureScreenWindow::signalClickDownload, this, &CaptureScreen::slotsClickDownload);
    connect(m_toolBar, &CaptureScreenWindow::signalClickCancel, this, &CaptureScreen::slotsClickClose);
    connect(m_toolBar, &CaptureScreenWindow::signalClickComplete, this, &CaptureScreen::slotsClickOK);

    if (QScreen* screen = QGuiApplication::primaryScreen())
        takeScreen(*screen);
    if (m_screen.isNull()) {
        qWarning() << "The screen cannot be captured on the platform" << QGuiApplication::platformName();
        QMetaObject::invokeMethod(this, &CaptureScreen::close, Qt::QueuedConnection);
        return;
    }
    showFullScreen();
}

void CaptureScreen::takeScreen(QScreen& screen)
{
    qDebug() << "desktop width =" << screen.virtualSize().width();
    qDebug() << "desktop height =" << screen.virtualSize().height();
    // A full-screen window gets one monitor of a larger desktop. It is to be the one that the picture shows.
    m_monitor = screen.geometry();
    setGeometry(m_monitor);
    // Window 0 counts from the monitor's own corner, the desktop's window from that of all monitors together.
    const QPixmap grab = screen.grabWindow(0, 0, 0, m_monitor.width(), m_monitor.height());
    m_screen = scaledToScreen(grab, m_monitor.size());
    qDebug() << "this.width =" << width();
    qDebug() << "this.height =" << height();
    qDebug() << "width =" << grab.width();
    qDebug() << "height =" << grab.height();
    qDebug() << "screenWidth =" << m_monitor.width();
    qDebug() << "screenHeight =" << m_monitor.height();
}

void CaptureScreen::setVisible(bool visible)
{
    QWidget::setVisible(visible && !m_screen.isNull());
}

void CaptureScreen::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    raise();
    activateWindow();
    setFocus();
}

// The picture stays where it was taken, also under a window manager that puts the overlay somewhere else.
QRect CaptureScreen::monitorInOverlay() const
{
    return m_monitor.translated(-mapToGlobal(QPoint()));
}

QRect CaptureScreen::selection() const
{
    return m_state == State::None ? QRect() : draggedRectangle(m_start, m_end, monitorInOverlay());
}

QPixmap CaptureScreen::selectedPart() const
{
    const QRect area = selection();
    // An empty rectangle would copy the whole screen.
    return area.isEmpty() ? QPixmap() : m_screen.copy(area.translated(-monitorInOverlay().topLeft()));
}

void CaptureScreen::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    painter.drawPixmap(monitorInOverlay().topLeft(), m_screen);
    painter.fillRect(rect(), kVeil);
    if (m_state == State::None)
        drawFirstHint(painter);
    if (!selection().isEmpty()) {
        drawSelection(painter);
        drawSizeHint(painter);
    }
}

// Only on the overlay: what is selected is copied from the screen as it was grabbed.
void CaptureScreen::drawFirstHint(QPainter& painter) const
{
    const QString text = tr("拖动选取一块，按 Esc 离开");
    QFont larger = font();
    larger.setPointSizeF(larger.pointSizeF() * 1.4);
    painter.setFont(larger);
    QRect box(QPoint(), painter.fontMetrics().size(Qt::TextSingleLine, text) + QSize(36, 20));
    box.moveCenter(monitorInOverlay().center());
    box.moveTop(monitorInOverlay().top() + monitorInOverlay().height() / 12);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kHintGround);
    painter.drawRoundedRect(box, 8, 8);
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, text);
}

void CaptureScreen::drawSelection(QPainter& painter) const
{
    const QRect area = selection();
    painter.drawPixmap(area, m_screen, area.translated(-monitorInOverlay().topLeft()));
    // Over the middle of the outermost pixels: seen at the screen's edge too, and whole on a dense screen.
    painter.setPen(QPen(Qt::blue, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5));
}

void CaptureScreen::drawSizeHint(QPainter& painter) const
{
    const QRect area = selection();
    const QString text = QStringLiteral("%1 × %2").arg(area.width()).arg(area.height());
    const QSize size = painter.fontMetrics().size(Qt::TextSingleLine, text) + QSize(12, 6);
    QRect box(area.topLeft() - QPoint(0, size.height() + 4), size);
    if (box.top() < monitorInOverlay().top())
        box.moveTopLeft(area.topLeft() + QPoint(4, 4));
    box.moveRight(qMin(box.right(), monitorInOverlay().right()));
    painter.fillRect(box, QColor(0, 0, 0, 160));
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, text);
}

void CaptureScreen::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || m_state != State::None)
        return;
    m_state = State::Selecting;
    m_start = m_end = event->pos();
}

void CaptureScreen::mouseMoveEvent(QMouseEvent* event)
{
    if (m_state != State::Selecting)
        return;
    m_end = event->pos();
    update();
}

void CaptureScreen::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || m_state != State::Selecting)
        return;
    m_end = event->pos();
    finishSelection();
}

void CaptureScreen::finishSelection()
{
    update();
    if (selection().isEmpty()) {
        m_state = State::None; // a click: the user may still drag
        return;
    }
    m_state = State::Selected;
    unsetCursor();
    m_toolBar->move(toolBarPosition(selection(), m_toolBar->sizeHint(), monitorInOverlay()));
    m_toolBar->show();
}

void CaptureScreen::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        slotsClickClose();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        slotsClickOK();
    else
        QWidget::keyPressEvent(event);
}

void CaptureScreen::slotsClickClose()
{
    close();
}

void CaptureScreen::slotsClickOK()
{
    const QPixmap part = selectedPart();
    if (!part.isNull())
        emit signalCompleteCature(part);
    close();
}

void CaptureScreen::slotsClickDownload()
{
    const QPixmap part = selectedPart();
    if (part.isNull())
        return;
    const QString name = askForFileName(proposedFileName());
    if (name.isEmpty())
        return;
    if (writeJpeg(name, part.toImage()))
        close();
    else
        QMessageBox::warning(this, tr("save image"), tr("无法保存文件:\n%1").arg(QDir::toNativeSeparators(name)));
}

QString CaptureScreen::askForFileName(const QString& proposal)
{
    return QFileDialog::getSaveFileName(this, tr("save image"), proposal, tr("Images (*.png *.xpm *.jpg)"));
}

// Every way out comes through here, the window manager's included.
void CaptureScreen::closeEvent(QCloseEvent* event)
{
    event->accept();
    hide();
    if (m_left)
        return;
    m_left = true;
    emit signalClose();
}
