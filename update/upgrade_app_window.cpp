#include "update/upgrade_app_window.h"

#include "ui_upgrade_app_window.h"
#include "update/upgrade_dialog.h"

#include <QDebug>
#include <QEvent>
#include <QFileDialog>
#include <QShortcut>
#include <QStandardPaths>

namespace {

constexpr int kShownCharacters = 20000; ///< of the notes: more than anyone reads, and laid out in half a second
constexpr int kShownVersion = 200;      ///< characters, of which fewer have room
constexpr int kNotesWidth = 336;        ///< pixels beside the scroll bar
constexpr ushort kFirstIdeograph = 0x2e80;
constexpr QChar kBreakHere(0x200b); ///< takes no room itself

/// The text with places to break within words that are wider than a line.
QString breakable(const QString& text, const QFontMetrics& metrics)
{
    QString result;
    int width = 0; // of the word so far
    for (const QChar c : text) {
        const bool breaksAnyway = c.isSpace() || c.unicode() >= kFirstIdeograph;
        width = breaksAnyway ? 0 : width + metrics.horizontalAdvance(c);
        if (width > kNotesWidth) {
            result += kBreakHere;
            width = metrics.horizontalAdvance(c);
        }
        result += c;
    }
    return result;
}

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
    QLabel* label = m_ui->labelNotes; // which the scroll area gives the height of its text
    label->ensurePolished();
    label->setText(breakable(m_model.remark.left(kShownCharacters), label->fontMetrics()));
}

void UpgradeAppWindow::onUpdate()
{
    const QString proposal = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + QLatin1Char('/') +
                             m_model.swCategory + m_model.versionCode + QStringLiteral(".exe");
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
