#include "app/print_progress.h"

#include <QAbstractButton>
#include <QEvent>
#include <QPainter>
#include <QProgressBar>

namespace {

constexpr int kDelayMs = 300;
constexpr int kBarHeight = 4;
constexpr int kButtonSide = 22;

const char kBarStyle[] = R"(
QProgressBar { background: #e3ecf7; border: none; }
QProgressBar::chunk { background: #2f7fd8; }
)";

/// A cross on a plate, in the colours of the tool bar's buttons.
class CancelButton : public QAbstractButton
{
public:
    using QAbstractButton::QAbstractButton;

protected:
    void paintEvent(QPaintEvent*) override
    {
        const bool lit = isEnabled() && underMouse();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QColor(lit ? 0xa8c8ec : 0xdbe4ee));
        painter.setBrush(QColor(isDown() ? 0xc6dcf5 : lit ? 0xeef3f8 : 0xfdffff));
        painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5)); // lines 1 wide fill pixels
        painter.setPen(QPen(QColor(isEnabled() ? 0x2b2f36 : 0xb6bbc2), 2, Qt::SolidLine, Qt::RoundCap));
        const QRectF cross = QRectF(rect()).adjusted(7, 7, -7, -7);
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.bottomLeft(), cross.topRight());
    }
};

} // namespace

PrintProgress::PrintProgress(QWidget* below)
    : QWidget(below->window())
    , m_below(below)
    , m_bar(new QProgressBar(this))
    , m_cancelButton(new CancelButton(this))
{
    hide();
    m_bar->setTextVisible(false);
    m_bar->setStyleSheet(QString::fromLatin1(kBarStyle));
    m_cancelButton->setFocusPolicy(Qt::NoFocus); // the caret stays in the page
    m_cancelButton->setAttribute(Qt::WA_Hover);
    m_delay.setSingleShot(true);
    m_delay.setInterval(kDelayMs);
    connect(&m_delay, &QTimer::timeout, this, [this] {
        place();
        raise();
        show();
    });
    connect(m_cancelButton, &QAbstractButton::clicked, this, [this] {
        m_cancelButton->setEnabled(false); // the printer may hold back the frame that is on its way
        emit cancelRequested();
    });
    below->installEventFilter(this);
    retranslate();
}

void PrintProgress::setRunning(bool running)
{
    if (!running) {
        m_delay.stop();
        hide();
    } else if (!m_delay.isActive() && isHidden()) {
        setSent(0, 1);
        m_cancelButton->setEnabled(true);
        m_delay.start();
    }
}

void PrintProgress::setSent(int sent, int total)
{
    m_bar->setRange(0, qMax(total, 1));
    m_bar->setValue(sent);
}

void PrintProgress::place()
{
    const QRect room(m_below->mapTo(parentWidget(), QPoint()), QSize(m_below->width(), kButtonSide));
    setGeometry(room);
    m_bar->setGeometry(0, 0, room.width() - kButtonSide, kBarHeight);
    m_cancelButton->setGeometry(room.width() - kButtonSide, 0, kButtonSide, kButtonSide);
    setMask(QRegion(m_bar->geometry()) + m_cancelButton->geometry());
}

void PrintProgress::retranslate()
{
    m_bar->setAccessibleName(tr("打印进度"));
    m_cancelButton->setToolTip(tr("取消打印"));
    m_cancelButton->setAccessibleName(m_cancelButton->toolTip());
}

bool PrintProgress::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_below && isVisible() && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        place();
    return QWidget::eventFilter(watched, event);
}

void PrintProgress::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
