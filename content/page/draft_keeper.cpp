#include "content/page/draft_keeper.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QTextDocument>
#include <QTextEdit>
#include <QtDebug>

#include <utility>

namespace {

constexpr int kDelayMs = 3000;  ///< leaves two of the five seconds that a crash may cost for the writing itself
constexpr int kRetryMs = 30000; ///< when the disk is full, say
constexpr int kMostNames = 100;

std::unique_ptr<QLockFile> lockOf(const QString& draft)
{
    auto lock = std::make_unique<QLockFile>(draft + QStringLiteral(".lock"));
    lock->setStaleLockTime(0); // only the end of its process makes it stale, not its age
    return lock;
}

bool isHeld(const QString& draft)
{
    const auto lock = lockOf(draft);
    return !lock->tryLock(0) && lock->error() == QLockFile::LockFailedError;
}

} // namespace

DraftKeeper::DraftKeeper(QTextEdit* editor, const QString& folder, QObject* parent)
    : QObject(parent)
    , m_editor(editor)
    , m_folder(folder)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &DraftKeeper::writeBehind);
    connect(editor->document(), &QTextDocument::contentsChanged, this, &DraftKeeper::noteChange);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &DraftKeeper::writeNow);
}

DraftKeeper::~DraftKeeper()
{
    if (m_thread.joinable())
        m_thread.join();
}

QStringList DraftKeeper::drafts() const
{
    QStringList files;
    for (const QString& name : QDir(m_folder).entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Time))
        files += m_folder + QLatin1Char('/') + name;
    return files;
}

bool DraftKeeper::hasOthers() const
{
    for (const QString& draft : drafts()) {
        if (draft != m_file && !isHeld(draft))
            return true;
    }
    return false;
}

bool DraftKeeper::hold(const QString& file)
{
    std::unique_ptr<QLockFile> lock = lockOf(file);
    if (!lock->tryLock(0))
        return false;
    m_lock = std::move(lock);
    m_file = file;
    return true;
}

bool DraftKeeper::holdNew()
{
    if (!QDir().mkpath(m_folder))
        return false;
    const QString begun = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh.mm.ss"));
    for (int i = 1; i < kMostNames; ++i) {
        const QString number = i > 1 ? QStringLiteral(" (%1)").arg(i) : QString();
        const QString file = m_folder + QLatin1Char('/') + begun + number + QStringLiteral(".html");
        if (!QFile::exists(file) && hold(file))
            return true;
    }
    return false;
}

void DraftKeeper::restore()
{
    for (const QString& draft : drafts()) {
        if (!hold(draft) && isHeld(draft)) // one that cannot be locked for another reason, a full disk say, is shown
            continue;
        PageContent page;
        const PageFault fault = readPage(draft, PageOrigin::Client, &page);
        if (fault != PageFault::None) {
            putAside(draft, fault);
            return;
        }
        replacePage(*m_editor, page);
        m_editor->document()->clearUndoRedoStacks();
        m_timer.stop();
        m_changed = false; // it is as it stands in the file
        m_writtenCaret = m_editor->textCursor().position();
        return;
    }
}

void DraftKeeper::putAside(const QString& file, PageFault fault)
{
    bool renamed = false;
    for (int i = 1; !renamed && i < kMostNames; ++i) {
        const QString number = i > 1 ? QString::number(i) : QString();
        renamed = QFile::rename(file, file + QStringLiteral(".unreadable") + number); // never over another file
    }
    qDebug() << "the draft cannot be read:" << file << describe(fault) << "put aside:" << renamed;
    m_lock.reset();
    m_file.clear();
}

/// The timer runs on while somebody writes.
void DraftKeeper::noteChange()
{
    m_changed = true;
    if (!m_timer.isActive())
        m_timer.start(kDelayMs);
}

/// @return whether there is a page to be written, and a draft to write it to
bool DraftKeeper::prepare()
{
    m_changed = false;
    m_writtenCaret = m_editor->textCursor().position();
    if (m_editor->document()->isEmpty()) {
        if (!m_file.isEmpty())
            QFile::remove(m_file);
        return false;
    }
    if (m_file.isEmpty() && !holdNew()) {
        settle(QStringLiteral("no draft can be held in ") + m_folder);
        return false;
    }
    return true;
}

void DraftKeeper::writeBehind()
{
    if (m_thread.joinable() || !m_changed || !prepare()) // a write that is on its way is followed by the next
        return;
    m_thread = std::thread([this, page = contentOf(*m_editor), file = m_file] {
        m_error = m_writer.write(page, file);
        QMetaObject::invokeMethod(this, &DraftKeeper::finish, Qt::QueuedConnection);
    });
}

void DraftKeeper::finish()
{
    if (!m_thread.joinable())
        return;
    m_thread.join();
    settle(m_error);
    if (m_changed && !m_timer.isActive())
        writeBehind();
}

void DraftKeeper::settle(const QString& error)
{
    if (error.isEmpty())
        return;
    qDebug() << "the draft was not written:" << error;
    m_changed = true;
    m_timer.start(kRetryMs);
}

bool DraftKeeper::writeNow()
{
    if (m_thread.joinable()) {
        m_thread.join();
        settle(m_error);
    }
    const bool moved = m_editor->textCursor().position() != m_writtenCaret;
    if ((m_changed || moved) && prepare())
        settle(m_writer.write(contentOf(*m_editor), m_file));
    return !m_changed;
}
