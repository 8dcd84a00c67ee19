#include "app/newest_version_box.h"

#include "app/dialogs/about_quillbox_dialog.h"
#include "app/main_window.h"

#include <QMessageBox>

void showNewestVersionBox(QWidget& window)
{
    auto* box = window.findChild<QMessageBox*>(QStringLiteral("newestVersionBox"));
    if (!box) {
        box = new QMessageBox(QMessageBox::Information, MainWindow::tr("检查更新"),
                              MainWindow::tr("已是最新版本（%1）").arg(AboutQuillboxDialog::version()),
                              QMessageBox::Ok, &window);
        box->setObjectName(QStringLiteral("newestVersionBox"));
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setAttribute(Qt::WA_ShowWithoutActivating);
        box->setModal(false);
    }
    box->show();
    box->raise();
}
