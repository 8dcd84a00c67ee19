#include "content/page/print_preview_window.h"

PrintPreviewWindow::PrintPreviewWindow(QWidget* parent)
    : QWidget(parent)
{
}

PrintPreviewWindow::~PrintPreviewWindow() = default;
