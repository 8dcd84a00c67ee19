#pragma once

#include <QFont>
#include <QImage>
#include <QPixmap>
#include <QWidget>

class DraftKeeper;
class EditorActions;
class FileActions;
class PageEditor;
class PageHolder;
class QMenu;
class QTextEdit;
class QToolBar;

/// The page on which the user composes text and pictures, with its toolbar. GUI thread.
///
/// Ctrl+P, or printPage(), renders the page as wide as the print head of the current model and hands it on; the
/// window knows nothing of the printer beyond that width.
class EditMainWindow : public QWidget
{
    Q_OBJECT

public:
    explicit EditMainWindow(QWidget* parent = nullptr);

    /// Makes the page's usual font the current one, without a dialog: in this size a line of text stays legible on
    /// the narrower of the two heads.
    void initFont();

    QTextEdit* editor() const;
    QAction* printAction() const { return m_printAction; }
    QAction* fontAction() const { return m_fontAction; }
    /// Insert a picture of a file, and a piece of the screen: what they do is up to the window around.
    QAction* pictureAction() const { return m_pictureAction; }
    QAction* captureAction() const { return m_captureAction; }
    EditorActions* textActions() const { return m_actions; }
    QAction* newAction() const;
    QAction* openAction() const;
    QAction* saveAction() const;

    /// Takes up the newest draft that no other client holds, and keeps the page as a draft from now on. Once, before the
    /// person writes.
    /// @param folder  of all drafts
    void keepDrafts(const QString& folder);
    /// Writes the draft at once, if there is one to keep.
    /// @return false: the page is not on the disk as it should be
    bool writeDraft();

    /// The menu of the button at the end of the tool bar, for what concerns more than the text.
    QMenu* moreMenu() const { return m_moreMenu; }

    /// The menu of a click with the other mouse button. The caller owns it.
    QMenu* createContextMenu();

signals:
    /// @param image      the page, as wide as the print head
    /// @param printType  0 when the page holds a picture, 1 when it holds text only
    void signDoPrint(QImage image, int printType);

public slots:
    /// Both insert at the cursor, scaled to the width of the page.
    void slotsInsertPixmap(QPixmap pixmap);
    void slotsInsertImage(QImage image);

    /// Renders the page and emits signDoPrint.
    void printPage();

    /// Asks for a font; it applies to the selection, or to the text typed next.
    void chooseFont();

protected:
    void changeEvent(QEvent* event) override;

private:
    void buildLayout();
    QAction* addOwnAction(const QKeySequence& key);
    void buildMoreButton();
    void retranslate();
    void settleHiddenWindow();
    void setCurrentFont(const QFont& font);
    void showContextMenu(const QPoint& position);

    PageEditor* m_editor;
    PageHolder* m_holder;
    QToolBar* m_toolBar;
    EditorActions* m_actions;
    QAction* m_printAction;
    QAction* m_fontAction;
    QAction* m_pictureAction;
    QAction* m_captureAction;
    QAction* m_moreAction;
    QMenu* m_moreMenu;
    FileActions* m_fileActions;
    DraftKeeper* m_drafts = nullptr; ///< null where no draft is kept
    QFont m_currentFont;
};
