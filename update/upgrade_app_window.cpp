#include "update/upgrade_app_window.h"

#include "ui_upgrade_app_window.h"
#include "update/installer_name.h"
#include "update/upgrade_dialog.h"

#include <QDebug>
#include <QEvent>
#include <QFileDialog>
#include <QShortcut>
#include <QStandardPaths>

namespace {

constexpr int kShownVersion = 200; ///< characters, of which fewer have room
constexpr int kLongNotes = 2000;   ///< characters, which never fit without the scroll bar

} // namespace

UpgradeAppWindow::UpgradeAppWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::UpgradeAppWindow)
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    setAttribute(Qt::WA_ShowWithoutActivating); // the person may be writing
    m_ui->buttonLater->setFocus();
    connect(m_ui->buttonUpdate, &QPushButton::clicked, this, &UpgradeAppWindow::onUpdate);
    connect(m_ui->buttonLater, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this, &QWidget::close);
}

UpgradeAppWindow::~UpgradeAppWindow() = default;

void UpgradeAppWindow::setModel(const GetSWVersionModel& model)
{
    m_model = model;
    showVersion();
    showNotes();
}

void UpgradeAppWindow::showVersion()
{
    QLabel* label = m_ui->labelVersion;
    label->ensurePolished(); // the style sheet gives it another font
    const QString text = tr("更新版本:") + m_model.versionName.left(kShownVersion);
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideRight, label->maximumWidth()));
    label->adjustSize();
}

void UpgradeAppWindow::showNotes()
{
    // Else the scroll area has long notes laid out with its bar and without.
    const bool isLong = m_model.remark.size() > kLongNotes;
    m_ui->areaNotes->setVerticalScrollBarPolicy(isLong ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAsNeeded);
    m_ui->labelNotes->resize(m_ui->areaNotes->maximumViewportSize());
    m_ui->labelNotes->setNotes(m_model.remark);
}

void UpgradeAppWindow::onUpdate()
{
    const QString proposal = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + QLatin1Char('/') +
                             installerName(m_model.swCategory, m_model.versionCode);
    const QString fileName = QFileDialog::getSaveFileName(this, tr("save file"), proposal, QString());
    qDebug() << fileName;
    if (fileName.isEmpty())
        return;
    auto* dialog = new UpgradeDialog;
    dialog->startDownload(m_model.swPath, fileName);
    dialog->show();
    close(); // now that another window is open, or the program would end with its last one
}

void UpgradeAppWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        showVersion();
    }
}
