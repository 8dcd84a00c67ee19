#include "app/frameless/qx_base_window.h"

QXBaseWindow::QXBaseWindow(QWidget* parent)
    : QWidget(parent)
{
}
