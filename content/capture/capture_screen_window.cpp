#include "content/capture/capture_screen_window.h"

#include "ui_capture_screen_window.h"

#include <QEvent>

CaptureScreenWindow::CaptureScreenWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CaptureScreenWindow>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground); // a bare QWidget would not paint the panel of its style sheet
    setCursor(Qt::ArrowCursor);
    connect(m_ui->downloadButton, &QPushButton::clicked, this, &CaptureScreenWindow::signalClickDownload);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &CaptureScreenWindow::signalClickCancel);
    connect(m_ui->completeButton, &QPushButton::clicked, this, &CaptureScreenWindow::signalClickComplete);
}

CaptureScreenWindow::~CaptureScreenWindow() = default;

void CaptureScreenWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
    QWidget::changeEvent(event);
}
