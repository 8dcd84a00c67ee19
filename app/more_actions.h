#pragma once

#include <QObject>

class MainWindow;
class QAction;
class QActionGroup;
class QMenu;

/// What the menu of the editor's "more" button holds beside the page's own actions: above them how the printer is as
/// the menu opens, and below them the languages, of which the shown one is checked, the check for updates, and
/// "about". Actions of their own, for those of the window's menu bar are out of reach and keep their keys. GUI thread.
class MoreActions : public QObject
{
    Q_OBJECT

public:
    /// Adds to the menu; the window owns the object, and both outlive it.
    MoreActions(QMenu& menu, MainWindow& window);

    /// Texts, and the check mark, in the language of the moment.
    void retranslate();

private:
    const MainWindow& m_window;
    QAction* m_printer; ///< says something and does nothing
    QActionGroup* m_languages;
    QAction* m_update;
    QAction* m_about;
};
