#pragma once

#include <QAction>
#include <QIcon>
#include <QList>
#include <QObject>

class QMenu;
class QTextEdit;
class QToolBar;

/// What can be done to the text of an editor: the actions of its toolbar, context menu and keyboard. Their checked
/// and enabled states follow the cursor. A format is checked where the whole selection has it; invoked on a mixed
/// selection it is set everywhere, invoked again it is taken away.
class EditorActions : public QObject
{
    Q_OBJECT

public:
    enum Id {
        Undo,
        Redo,
        Cut,
        Copy,
        Paste,
        SelectAll,
        Bold,
        Italic,
        Underline,
        AlignLeft,
        AlignCenter,
        AlignRight,
        Smaller,
        Larger,
        Count
    };

    /// The shortcuts work while the focus is in `owner`; both must outlive this object.
    EditorActions(QTextEdit* editor, QWidget* owner);

    QAction* action(Id id) const { return m_actions[id]; }

    void fillToolBar(QToolBar& bar) const;
    void fillMenu(QMenu& menu) const;

    /// Texts in the language of the moment.
    void retranslate();

private:
    void connectAll();
    void invoke(Id id);
    void toggleFormat(Id id);
    void align(Qt::Alignment alignment);
    void followCursor();

    QTextEdit* m_editor;
    QList<QAction*> m_actions; // by Id
};

/// Of a strip with the looks of an enabled and a disabled button, in both densities.
QIcon toolBarIcon(const char* name);

/// "加粗 (Ctrl+B)": an action's text with its first shortcut.
QString toolTipOf(const QAction& action);
