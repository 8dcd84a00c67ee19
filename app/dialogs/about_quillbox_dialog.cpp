#include "app/dialogs/about_quillbox_dialog.h"

#include "app/globals/version.h"
#include "ui_about_quillbox_dialog.h"

#include <QDesktopServices>
#include <QEvent>
#include <QUrl>

namespace {
const QString kSite = QStringLiteral("https://www.quillbox.example/");
} // namespace

AboutQuillboxDialog::AboutQuillboxDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(new Ui::AboutQuillboxDialog)
{
    m_ui->setupUi(this);
    // In place of the flags of a dialog. With none about its frame the window gets a title bar and a close button.
    setWindowFlags(Qt::WindowStaysOnTopHint);
    setComposedTexts();
    connect(m_ui->labelLink, &QLabel::linkActivated, this, &AboutQuillboxDialog::openLink);
}

AboutQuillboxDialog::~AboutQuillboxDialog() = default;

QString AboutQuillboxDialog::version()
{
    return QLatin1Char('V') + QLatin1String(kClientVersion);
}

void AboutQuillboxDialog::setComposedTexts()
{
    m_ui->labelVersion->setText(tr("版本:") + version());
    m_ui->labelLink->setText(QStringLiteral("<a style='color: black;' href = '") + kSite + QStringLiteral("'>") +
                             tr("羽毛盒官网") + QStringLiteral("</a>"));
}

void AboutQuillboxDialog::openLink(const QString& link)
{
    QDesktopServices::openUrl(QUrl(link));
}

void AboutQuillboxDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        setComposedTexts();
    }
    QDialog::changeEvent(event);
}
