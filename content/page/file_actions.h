#pragma once

#include "content/page/page_file.h"

#include <QAction>
#include <QObject>
#include <QString>

class DraftKeeper;
class QTextEdit;
class QWidget;

/// What can be done with the page as a whole: begin a new one, open one from a file, save it to one. Each asks and tells
/// in dialogs over `owner`; opening and beginning anew are one undo step each. GUI thread.
class FileActions : public QObject
{
    Q_OBJECT

public:
    /// The shortcuts work in the window of `owner`; both must outlive this object.
    FileActions(QTextEdit* editor, QWidget* owner);

    QAction* newAction() const { return m_new; }
    QAction* openAction() const { return m_open; }
    QAction* saveAction() const { return m_save; }

    /// While there are drafts of clients that have ended, "Open" begins in their folder for the first time and shows it
    /// beside the others later. It begins in the folder of the last file otherwise, or in that of documents.
    /// @param drafts  outlives this object
    void offerDrafts(const DraftKeeper* drafts) { m_drafts = drafts; }

    /// Without a question. A failure is told in a box; page or file are then as they were.
    bool openFile(const QString& file);
    bool saveFile(const QString& file);

    /// Texts in the language of the moment.
    void retranslate();

signals:
    /// The page was emptied; what is typed next should look like on the first page.
    void emptied();

private:
    void beginNew();
    void askAndOpen();
    void askAndSave();
    QString lastFolder() const;
    void remember(const QString& file);
    QString proposedName() const;
    QString describeFault(PageFault fault) const;
    void tell(const QString& text);

    QTextEdit* m_editor;
    QWidget* m_owner;
    QAction* m_new;
    QAction* m_open;
    QAction* m_save;
    QString m_folder; ///< of the last file
    QString m_name;   ///< of the file that the page was opened from or saved to
    const DraftKeeper* m_drafts = nullptr;
    bool m_draftsShown = false;
    PageWriter m_writer;
};
