#include "content/capture/capture_screen_window.h"

#include "ui_capture_screen_window.h"

CaptureScreenWindow::CaptureScreenWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::CaptureScreenWindow)
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground); // a bare QWidget would not paint the panel of its style sheet
    setCursor(Qt::ArrowCursor);
    connect(m_ui->downloadButton, &QPushButton::clicked, this, &CaptureScreenWindow::signalClickDownload);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &CaptureScreenWindow::signalClickCancel);
    connect(m_ui->completeButton, &QPushButton::clicked, this, &CaptureScreenWindow::signalClickComplete);
}

CaptureScreenWindow::~CaptureScreenWindow() = default;
