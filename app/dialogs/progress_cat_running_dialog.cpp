#include "app/dialogs/progress_cat_running_dialog.h"

#include "ui_progress_cat_running_dialog.h"

#include <QApplication>
#include <QBitmap>
#include <QCloseEvent>
#include <QMovie>
#include <QPointer>
#include <QScreen>

#include <algorithm>

namespace {

/// Whether a window is open that keeps the program running.
bool programGoesOn()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && !window->parentWidget() && window->testAttribute(Qt::WA_QuitOnClose);
    });
}

QPointer<QWidget>& client()
{
    static QPointer<QWidget> window;
    return window;
}

} // namespace

ProgressCatRunningDialog::ProgressCatRunningDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(new Ui::Progress_Cat_Running_Dialog)
{
    m_ui->setupUi(this);
    // In place of the flags of a dialog, whose window type goes with them.
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowMinimizeButtonHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    cutOut();
    startAnimation();
}

ProgressCatRunningDialog::~ProgressCatRunningDialog() = default;

/// Without a compositor what should be see-through is black, so the window ends where the card does.
void ProgressCatRunningDialog::cutOut()
{
    const QPixmap card(QStringLiteral(":/new/src/images/dialog_cat_running_gif_bg.png"));
    if (!card.isNull())
        setMask(card.scaled(m_ui->label_2->size()).createMaskFromColor(Qt::transparent));
}

void ProgressCatRunningDialog::startAnimation()
{
    // The style sheet shows the first frame as the label's background, which would stand still behind the moving cat.
    m_ui->label->setAttribute(Qt::WA_NoSystemBackground);
    // The movie outlives the dialog (docs/architecture.md, "Kept behaviour").
    auto* movie = new QMovie(QStringLiteral(":/new/src/images/progress_catrun.gif"));
    movie->setScaledSize(m_ui->label->size());
    m_ui->label->setMovie(movie);
    movie->start();
}

/// A film without speed asks for no further frame and goes on from its frame later; it runs all the while.
void ProgressCatRunningDialog::setAnimated(bool animated)
{
    m_ui->label->movie()->setSpeed(animated ? 100 : 0);
}

void ProgressCatRunningDialog::standOver(QWidget* window)
{
    client() = window;
}

/// The client's window where it is there to be covered: one that is smaller than the dialog has made room for a
/// capture of the screen.
QWidget* ProgressCatRunningDialog::clientInSight() const
{
    QWidget* window = client();
    const bool isThere = window && window->isVisible() && !window->isMinimized();
    return isThere && size().boundedTo(window->size()) == size() ? window : nullptr;
}

void ProgressCatRunningDialog::placeOverClient()
{
    const QWidget* window = clientInSight();
    if (!window)
        return;
    QRect place(QPoint(), size());
    place.moveCenter(window->geometry().center());
    const QRect room = window->screen()->availableGeometry();
    place.moveLeft(qBound(room.left(), place.left(), room.right() + 1 - width()));
    place.moveTop(qBound(room.top(), place.top(), room.bottom() + 1 - height()));
    move(place.topLeft());
}

bool ProgressCatRunningDialog::event(QEvent* event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide)
        setAnimated(event->type() == QEvent::Show);
    if (event->type() == QEvent::Show && client()) {
        placeOverClient();
        client()->installEventFilter(this); // at the program's start the dialog comes first
    }
    if (event->type() == QEvent::Hide && client())
        client()->removeEventFilter(this);
    const bool handled = QDialog::event(event);
    // By a click, or by a window manager that activates everything.
    if (event->type() == QEvent::WindowActivate && clientInSight())
        clientInSight()->activateWindow();
    return handled;
}

bool ProgressCatRunningDialog::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (watched == client() && (type == QEvent::Show || type == QEvent::Move || type == QEvent::Resize))
        placeOverClient();
    return QDialog::eventFilter(watched, event);
}

void ProgressCatRunningDialog::setText(QString text)
{
    m_text = text;
    m_ui->labelText->setText(text);
    m_ui->labelText->adjustSize();
    // With the larger letters of a screen at 125 % the usual text needs more room than its usual place has.
    const int usualLeft = 20;
    const int beside = qMax(0, m_ui->label_2->width() - m_ui->labelText->width());
    const bool fits = usualLeft + m_ui->labelText->width() <= width();
    m_ui->labelText->move(fits ? usualLeft : beside / 2, m_ui->labelText->y());
}

void ProgressCatRunningDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        if (m_text)
            m_ui->labelText->setText(*m_text);
    }
    QDialog::changeEvent(event);
}

void ProgressCatRunningDialog::closeEvent(QCloseEvent* event)
{
    // To quit, Qt closes every window as a window manager would, and gives up at the first one that stays.
    if (event->spontaneous() && programGoesOn())
        event->ignore();
    else
        QDialog::closeEvent(event);
}

/// No key means anything here, least of all Escape. Not by a reject() that does nothing: close() goes through it too.
void ProgressCatRunningDialog::keyPressEvent(QKeyEvent*) {}
