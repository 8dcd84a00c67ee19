#include "app/print_failure_box.h"

#include "app/main_window.h"

#include <QGridLayout>
#include <QMessageBox>

namespace {

constexpr int kWidestCause = 420; ///< pixels; what is longer wraps, as words and names of files may

/// A box is only as wide as its text, and would break the cause into words.
void makeRoom(QMessageBox& box, const QString& cause)
{
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!grid)
        return;
    const int width = qMin(box.fontMetrics().horizontalAdvance(cause) + 1, kWidestCause);
    grid->setColumnMinimumWidth(grid->columnCount() - 1, width);
}

} // namespace

void showPrintFailureBox(QWidget& window, const QString& text, const QString& cause)
{
    QMessageBox box(QMessageBox::Information, MainWindow::tr("消息提示"), text, QMessageBox::Ok, &window);
    box.setInformativeText(cause);
    makeRoom(box, cause);
    box.exec();
}
