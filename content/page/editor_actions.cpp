#include "content/page/editor_actions.h"

#include "app/widgets/glyph_button.h"
#include "content/page/font_size_box.h"
#include "content/page/text_runs.h"

#include <QImage>
#include <QMenu>
#include <QPixmap>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolBar>

namespace {

struct ActionRow
{
    const char* text;
    const char* keys; ///< separated by "; "
    int standardKeys; ///< QKeySequence::StandardKey, shown before `keys`; UnknownKey for none
    const char* icon; ///< its strip of pictures; null for actions of the menu alone
    bool checkable;
};

// In the order of EditorActions::Id.
const ActionRow kRows[EditorActions::Count] = {
    {QT_TRANSLATE_NOOP("EditorActions", "撤销"), "", QKeySequence::Undo, "undo", false},
    {QT_TRANSLATE_NOOP("EditorActions", "重做"), "Ctrl+Y; Ctrl+Shift+Z", QKeySequence::Redo, "redo", false},
    {QT_TRANSLATE_NOOP("EditorActions", "剪切"), "", QKeySequence::Cut, nullptr, false},
    {QT_TRANSLATE_NOOP("EditorActions", "复制"), "", QKeySequence::Copy, nullptr, false},
    {QT_TRANSLATE_NOOP("EditorActions", "粘贴"), "", QKeySequence::Paste, nullptr, false},
    {QT_TRANSLATE_NOOP("EditorActions", "全选"), "", QKeySequence::SelectAll, nullptr, false},
    {QT_TRANSLATE_NOOP("EditorActions", "加粗"), "Ctrl+B", QKeySequence::UnknownKey, "bold", true},
    {QT_TRANSLATE_NOOP("EditorActions", "斜体"), "Ctrl+I", QKeySequence::UnknownKey, "italic", true},
    {QT_TRANSLATE_NOOP("EditorActions", "下划线"), "Ctrl+U", QKeySequence::UnknownKey, "underline", true},
    {QT_TRANSLATE_NOOP("EditorActions", "左对齐"), "Ctrl+L", QKeySequence::UnknownKey, "align_left", true},
    {QT_TRANSLATE_NOOP("EditorActions", "居中"), "Ctrl+E", QKeySequence::UnknownKey, "align_center", true},
    {QT_TRANSLATE_NOOP("EditorActions", "右对齐"), "Ctrl+R", QKeySequence::UnknownKey, "align_right", true},
    {QT_TRANSLATE_NOOP("EditorActions", "减小字号"), "Ctrl+[; Ctrl+Shift+<", QKeySequence::UnknownKey, "smaller",
     false},
    {QT_TRANSLATE_NOOP("EditorActions", "增大字号"), "Ctrl+]; Ctrl+Shift+>", QKeySequence::UnknownKey, "larger",
     false},
};

QList<QKeySequence> shortcutsOf(const ActionRow& row)
{
    QList<QKeySequence> keys;
    if (row.standardKeys != QKeySequence::UnknownKey)
        keys = QKeySequence::keyBindings(static_cast<QKeySequence::StandardKey>(row.standardKeys));
    for (const QKeySequence& key : QKeySequence::listFromString(QString::fromLatin1(row.keys))) {
        if (!keys.contains(key))
            keys.append(key);
    }
    return keys;
}

bool isBold(const QTextCharFormat& format)
{
    return format.fontWeight() > QFont::Medium;
}

bool isItalic(const QTextCharFormat& format)
{
    return format.fontItalic();
}

bool isUnderlined(const QTextCharFormat& format)
{
    return format.fontUnderline();
}

} // namespace

QIcon toolBarIcon(const char* name)
{
    QIcon icon;
    for (const char* density : {"", "@2x"}) {
        QImage strip(QStringLiteral(":/new/src/images/%1%2.png").arg(name, density));
        strip.setDevicePixelRatio(1); // looks are cut in pixels of the file
        const int side = strip.height();
        icon.addPixmap(QPixmap::fromImage(strip.copy(0, 0, side, side)), QIcon::Normal);
        icon.addPixmap(QPixmap::fromImage(strip.copy(side, 0, side, side)), QIcon::Disabled);
    }
    return icon;
}

QString toolTipOf(const QAction& action)
{
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    const QString text = action.iconText(); // without the dots of an action that asks something first
    return keys.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, keys);
}

EditorActions::EditorActions(QTextEdit* editor, QWidget* owner)
    : QObject(owner)
    , m_editor(editor)
{
    for (int id = 0; id < Count; ++id) {
        auto* action = new QAction(this);
        action->setCheckable(kRows[id].checkable);
        if (kRows[id].icon)
            action->setIcon(toolBarIcon(kRows[id].icon));
        action->setIconVisibleInMenu(false); // the menu shows check marks in their place
        action->setShortcuts(shortcutsOf(kRows[id]));
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, [this, id] { invoke(static_cast<Id>(id)); });
        owner->addAction(action);
        m_actions.append(action);
    }
    retranslate();
    connectAll();
    followCursor();
}

void EditorActions::connectAll()
{
    const QTextDocument* document = m_editor->document();
    action(Undo)->setEnabled(document->isUndoAvailable());
    action(Redo)->setEnabled(document->isRedoAvailable());
    connect(document, &QTextDocument::undoAvailable, action(Undo), &QAction::setEnabled);
    connect(document, &QTextDocument::redoAvailable, action(Redo), &QAction::setEnabled);
    action(Cut)->setEnabled(false);
    action(Copy)->setEnabled(false);
    connect(m_editor, &QTextEdit::copyAvailable, action(Cut), &QAction::setEnabled);
    connect(m_editor, &QTextEdit::copyAvailable, action(Copy), &QAction::setEnabled);
    connect(m_editor, &QTextEdit::cursorPositionChanged, this, &EditorActions::followCursor);
    connect(m_editor, &QTextEdit::selectionChanged, this, &EditorActions::followCursor);
    connect(m_editor, &QTextEdit::currentCharFormatChanged, this, &EditorActions::followCursor);
    connect(document, &QTextDocument::contentsChanged, this, &EditorActions::followCursor);
}

void EditorActions::fillToolBar(QToolBar& bar) const
{
    for (const Id id : {Undo, Redo, Bold, Italic, Underline, AlignLeft, AlignCenter, AlignRight, Smaller, Larger}) {
        if (id == Bold || id == AlignLeft || id == Smaller)
            bar.addSeparator();
        if (id == Larger)
            bar.addWidget(new FontSizeBox(*m_editor));
        auto* button = new GlyphButton(action(id));
        button->setIconSize(bar.iconSize());
        bar.addWidget(button);
    }
}

void EditorActions::fillMenu(QMenu& menu) const
{
    action(Paste)->setEnabled(m_editor->canPaste());
    for (int id = 0; id < Count; ++id) {
        if (id == Cut || id == Bold || id == AlignLeft || id == Smaller)
            menu.addSeparator();
        menu.addAction(action(static_cast<Id>(id)));
    }
    // Whether there is something to paste is asked when the menu opens; the keys must work whatever came since.
    connect(&menu, &QObject::destroyed, action(Paste), [paste = action(Paste)] { paste->setEnabled(true); });
}

void EditorActions::retranslate()
{
    for (int id = 0; id < Count; ++id) {
        m_actions[id]->setText(tr(kRows[id].text));
        m_actions[id]->setToolTip(toolTipOf(*m_actions[id]));
    }
}

void EditorActions::invoke(Id id)
{
    switch (id) {
    case Undo:
        m_editor->undo();
        break;
    case Redo:
        m_editor->redo();
        break;
    case Cut:
        m_editor->cut();
        break;
    case Copy:
        m_editor->copy();
        break;
    case Paste:
        m_editor->paste();
        break;
    case SelectAll:
        m_editor->selectAll();
        break;
    case Bold:
    case Italic:
    case Underline:
        toggleFormat(id);
        break;
    case AlignLeft:
        align(Qt::AlignLeft | Qt::AlignAbsolute);
        break;
    case AlignCenter:
        align(Qt::AlignHCenter);
        break;
    case AlignRight:
        align(Qt::AlignRight | Qt::AlignAbsolute);
        break;
    case Smaller:
        stepFontSize(*m_editor, -1);
        break;
    case Larger:
        stepFontSize(*m_editor, 1);
        break;
    case Count:
        break;
    }
    followCursor();
}

void EditorActions::toggleFormat(Id id)
{
    QTextCharFormat change;
    if (id == Bold)
        change.setFontWeight(selectionIs(*m_editor, isBold) ? QFont::Normal : QFont::Bold);
    else if (id == Italic)
        change.setFontItalic(!selectionIs(*m_editor, isItalic));
    else
        change.setFontUnderline(!selectionIs(*m_editor, isUnderlined));
    m_editor->mergeCurrentCharFormat(change);
}

void EditorActions::align(Qt::Alignment alignment)
{
    m_editor->setAlignment(alignment);
}

void EditorActions::followCursor()
{
    action(Bold)->setChecked(selectionIs(*m_editor, isBold));
    action(Italic)->setChecked(selectionIs(*m_editor, isItalic));
    action(Underline)->setChecked(selectionIs(*m_editor, isUnderlined));
    const Qt::Alignment alignment = commonAlignment(*m_editor);
    action(AlignLeft)->setChecked(alignment.testFlag(Qt::AlignLeft));
    action(AlignCenter)->setChecked(alignment.testFlag(Qt::AlignHCenter));
    action(AlignRight)->setChecked(alignment.testFlag(Qt::AlignRight));
}
