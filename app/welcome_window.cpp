#include "app/welcome_window.h"
#include "ui_welcome_window.h"

#include "app/frameless/hm_title_bar.h"
#include "app/main_window.h"

#include <QTimer>
#include <QtDebug>

namespace {

constexpr int kShownMs = 5000;
constexpr int kTitleBarHeight = 30; ///< pixels

} // namespace

WelcomeWindow::WelcomeWindow(QWidget* parent)
    : HMBaseWindow(parent)
    , m_ui(std::make_unique<Ui::WelcomeWindow>())
{
    m_ui->setupUi(this);
    titleBar()->resize(width(), kTitleBarHeight);
    QTimer::singleShot(kShownMs, Qt::CoarseTimer, this, &WelcomeWindow::handleTimeOut);
}

WelcomeWindow::~WelcomeWindow() = default;

void WelcomeWindow::handleTimeOut()
{
    qDebug() << "handleTimeOut";
    hide();
    m_mainWindow = new MainWindow(this);
    m_mainWindow->show();
}
