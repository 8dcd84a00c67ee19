#include "device/diagnostics/upgrade_window.h"

#include "ui_upgrade_window.h"
#include "update/upgrade_app_window.h"

#include <QEvent>

TestUpgradeWindow::TestUpgradeWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::TestUpgradeWindow)
{
    m_ui->setupUi(this);
    connect(m_ui->buttonOpen, &QPushButton::clicked, this, &TestUpgradeWindow::onOpenClicked);
}

TestUpgradeWindow::~TestUpgradeWindow() = default;

void TestUpgradeWindow::onOpenClicked()
{
    GetSWVersionModel model;
    model.swCategory = m_ui->swCategory->text();
    model.swPath = m_ui->swPath->text();
    model.versionCode = m_ui->versionCode->text();
    model.versionName = m_ui->versionName->text();
    model.remark = m_ui->remark->toPlainText();
    model.mustUpdate = m_ui->mustUpdate->isChecked();
    auto* window = new UpgradeAppWindow;
    window->setModel(model);
    window->show();
}

void TestUpgradeWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
}
