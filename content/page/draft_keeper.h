#pragma once

#include "content/page/page_content.h"
#include "content/page/page_file.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <thread>

class QLockFile;
class QTextEdit;

/// Keeps the page of an editor as a draft, so that it is there again after a crash. GUI thread; pictures are encoded and
/// files written by a thread of its own.
///
/// Each client has one draft, a page file named after the time at which it was begun, and holds it with a lock file. A
/// draft that is not held belongs to a client that has ended. An empty page has no draft.
class DraftKeeper : public QObject
{
    Q_OBJECT

public:
    /// @param folder  of all drafts; made when the first is written
    DraftKeeper(QTextEdit* editor, const QString& folder, QObject* parent = nullptr);
    ~DraftKeeper() override;

    /// Takes the newest draft that nobody holds and shows it, with its caret and nothing to be undone. One that cannot be
    /// read is renamed and left in the folder, and the page stays as it is. Call once, before the person writes.
    void restore();

    /// Writes the draft now, if the page or the caret has changed. What goes wrong is logged and tried again later.
    /// @return whether the draft is as the page
    bool writeNow();

    /// Whether there is a draft that no running client holds.
    bool hasOthers() const;

    QString folder() const { return m_folder; }
    QString file() const { return m_file; } ///< empty while no draft can be held

private:
    QStringList drafts() const;
    bool hold(const QString& file);
    bool holdNew();
    void putAside(const QString& file, PageFault fault);
    void noteChange();
    bool prepare();
    void writeBehind();
    void finish();
    void settle(const QString& error);

    QTextEdit* m_editor;
    const QString m_folder;
    QString m_file;
    std::unique_ptr<QLockFile> m_lock;
    QTimer m_timer;
    bool m_changed = false;
    int m_writtenCaret = 0;
    std::thread m_thread; ///< joinable from the beginning of a write until finish()
    PageWriter m_writer;  ///< of the thread, while there is one
    QString m_error;      ///< of its last write
};
