#include "content/page/file_actions.h"

#include "content/page/draft_keeper.h"
#include "content/page/editor_actions.h"
#include "content/page/page_content.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTextEdit>
#include <QUrl>

#include <utility>

namespace {

constexpr int kNameCharacters = 40; ///< of the page's first words, as a file's name

QString documents()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(folder).isDir() ? folder : QDir::homePath(); // the dialogs take another for a file's name
}

} // namespace

FileActions::FileActions(QTextEdit* editor, QWidget* owner)
    : QObject(owner)
    , m_editor(editor)
    , m_owner(owner)
    , m_new(new QAction(this))
    , m_open(new QAction(this))
    , m_save(new QAction(this))
{
    m_new->setShortcuts(QKeySequence::New);
    m_open->setShortcuts(QKeySequence::Open);
    m_save->setShortcuts(QKeySequence::Save);
    owner->addActions({m_new, m_open, m_save});
    connect(m_new, &QAction::triggered, this, &FileActions::beginNew);
    connect(m_open, &QAction::triggered, this, &FileActions::askAndOpen);
    connect(m_save, &QAction::triggered, this, &FileActions::askAndSave);
    retranslate();
}

void FileActions::retranslate()
{
    m_new->setText(tr("新建"));
    m_open->setText(tr("打开..."));
    m_save->setText(tr("保存..."));
    for (QAction* action : {m_new, m_open, m_save})
        action->setToolTip(toolTipOf(*action));
}

void FileActions::beginNew()
{
    clearPage(*m_editor);
    m_name.clear();
    emit emptied();
}

QString FileActions::lastFolder() const
{
    return m_folder.isEmpty() ? documents() : m_folder;
}

void FileActions::askAndOpen()
{
    QFileDialog dialog(m_owner, tr("打开页面"), lastFolder(), tr("页面 (*.html *.htm)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (m_drafts && m_drafts->hasOthers()) {
        dialog.setSidebarUrls({QUrl::fromLocalFile(m_drafts->folder()), QUrl::fromLocalFile(documents())});
        if (!std::exchange(m_draftsShown, true)) {
            dialog.setDirectory(m_drafts->folder());
            dialog.setWindowTitle(tr("打开草稿或页面"));
        }
    }
    if (dialog.exec() == QDialog::Accepted)
        openFile(dialog.selectedFiles().value(0));
}

void FileActions::askAndSave()
{
    QFileDialog dialog(m_owner, tr("保存页面"), lastFolder(), tr("页面 (*.html *.htm)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("html"));
    dialog.selectFile(proposedName());
    if (dialog.exec() == QDialog::Accepted)
        saveFile(dialog.selectedFiles().value(0));
}

bool FileActions::openFile(const QString& file)
{
    PageContent page;
    const PageFault fault = readPage(file, PageOrigin::Anybody, &page);
    if (fault != PageFault::None) {
        tell(tr("无法打开文件:\n%1\n%2").arg(QDir::toNativeSeparators(file), describeFault(fault)));
        return false;
    }
    page.caret = 0;
    replacePage(*m_editor, page);
    if (m_editor->document()->isEmpty())
        emit emptied();
    remember(file);
    return true;
}

bool FileActions::saveFile(const QString& file)
{
    const QString error = m_writer.write(contentOf(*m_editor), file);
    if (!error.isEmpty()) {
        tell(tr("无法保存文件:\n%1\n%2").arg(QDir::toNativeSeparators(file), error));
        return false;
    }
    remember(file);
    return true;
}

void FileActions::remember(const QString& file)
{
    const QFileInfo info(file);
    const bool isDraft = m_drafts && info.dir() == QDir(m_drafts->folder()); // pages are not saved among them
    m_name = isDraft ? QString() : info.fileName();
    m_folder = isDraft ? m_folder : info.path();
}

/// The file's, or the page's first words, without what a file system does not take.
QString FileActions::proposedName() const
{
    if (!m_name.isEmpty())
        return m_name;
    static const QRegularExpression unusable(QStringLiteral("[\\\\/:*?\"<>|\\x{0}-\\x{1f}\\x{fffc}]|^[\\s.]+"));
    QString name = m_editor->toPlainText().trimmed().section(QLatin1Char('\n'), 0, 0).left(kNameCharacters);
    name = name.remove(unusable).simplified();
    return (name.isEmpty() ? tr("页面") : name) + QStringLiteral(".html");
}

QString FileActions::describeFault(PageFault fault) const
{
    switch (fault) {
    case PageFault::TooLarge:
        return tr("文件或其中的图片太大。");
    case PageFault::NotAPage:
        return tr("文件不是页面 (HTML)，或其文字无法识别。");
    case PageFault::Damaged:
        return tr("文件已损坏或不完整。");
    case PageFault::OtherVersion:
        return tr("文件由其他版本的羽毛盒保存，请更新后再打开。");
    default:
        return tr("文件不存在或无法读取。");
    }
}

void FileActions::tell(const QString& text)
{
    QMessageBox::warning(m_owner, tr("消息提示"), text, QMessageBox::Ok);
}
