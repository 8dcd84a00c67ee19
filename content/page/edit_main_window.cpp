#include "content/page/edit_main_window.h"

#include "app/globals/model.h"
#include "app/globals/sheet_model.h"
#include "app/widgets/glyph_button.h"
#include "app/widgets/light_palette.h"
#include "content/page/draft_keeper.h"
#include "content/page/editor_actions.h"
#include "content/page/file_actions.h"
#include "content/page/page_editor.h"
#include "content/page/page_renderer.h"
#include "content/page/picture_insertion.h"

#include <QAction>
#include <QDateTime>
#include <QEvent>
#include <QFontDialog>
#include <QGuiApplication>
#include <QInputMethod>
#include <QMenu>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

constexpr int kInitialPointSize = 20;
// Stems and steps from letter to letter of whole dots: else one letter prints in several shapes and weights.
constexpr QFont::HintingPreference kSheetHinting = QFont::PreferFullHinting;

const char kToolBarStyle[] = R"(
QToolBar { background: #fdffff; border: none; border-bottom: 1px solid #dfdfdf; spacing: 2px; padding: 1px 6px; }
QToolBar::separator { background: #dfdfdf; width: 1px; margin: 5px 6px; }
QToolButton { background: transparent; border: 1px solid transparent; border-radius: 4px; padding: 3px; margin: 0; }
QToolButton:enabled:hover { background: #eef3f8; border-color: #dbe4ee; }
QToolButton:enabled:checked { background: #d9e8fa; border-color: #a8c8ec; }
QToolButton::menu-indicator { image: none; }
QToolButton:enabled:pressed { background: #c6dcf5; border-color: #8fb8e6; }
)";

} // namespace

EditMainWindow::EditMainWindow(QWidget* parent)
    : QWidget(parent)
    , m_editor(new PageEditor)
    , m_holder(new PageHolder(m_editor))
    , m_toolBar(new QToolBar)
    , m_actions(nullptr)
    , m_printAction(addOwnAction({}))
    , m_fontAction(addOwnAction(QKeySequence(QStringLiteral("Ctrl+T"))))
    , m_pictureAction(addOwnAction(QKeySequence(QStringLiteral("Ctrl+Shift+I"))))
    , m_captureAction(addOwnAction(QKeySequence(QStringLiteral("Ctrl+Shift+S"))))
    , m_moreAction(addOwnAction(QKeySequence(QStringLiteral("F10"))))
    , m_moreMenu(new QMenu(this))
    , m_fileActions(new FileActions(m_editor, this))
    , m_currentFont(font())
{
    setPalette(lightPalette());
    setAutoFillBackground(true);
    buildLayout();
    m_actions = new EditorActions(m_editor, this);
    m_actions->fillToolBar(*m_toolBar);
    buildMoreButton();
    m_moreMenu->addActions({newAction(), openAction(), saveAction()});
    m_moreMenu->addSeparator();

    m_printAction->setShortcuts(QKeySequence::Print);
    connect(m_printAction, &QAction::triggered, this, &EditMainWindow::printPage);
    connect(m_fontAction, &QAction::triggered, this, &EditMainWindow::chooseFont);
    connect(m_fileActions, &FileActions::emptied, this, [this] { setCurrentFont(m_editor->font()); });
    m_editor->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_editor, &QWidget::customContextMenuRequested, this, &EditMainWindow::showContextMenu);
    connect(&sheetModel(), &SheetModel::changed, this, [this] { m_editor->setSheetWidth(sheetModel().widthDots()); });
    retranslate();
}

void EditMainWindow::buildLayout()
{
    m_toolBar->setIconSize(QSize(20, 20));
    m_toolBar->setMovable(false);
    m_toolBar->setContextMenuPolicy(Qt::PreventContextMenu);
    m_toolBar->setStyleSheet(QString::fromLatin1(kToolBarStyle));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_toolBar);
    layout->addWidget(m_holder, 1);
    setFocusProxy(m_editor);
}

QAction* EditMainWindow::addOwnAction(const QKeySequence& key)
{
    auto* action = new QAction(this);
    action->setShortcut(key);
    addAction(action);
    return action;
}

void EditMainWindow::buildMoreButton()
{
    auto* stretch = new QWidget;
    stretch->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_toolBar->addWidget(stretch);
    m_moreAction->setIcon(toolBarIcon("more"));
    auto* button = new GlyphButton(m_moreAction);
    button->setObjectName(QStringLiteral("moreButton"));
    button->setIconSize(m_toolBar->iconSize());
    button->setMenu(m_moreMenu);
    button->setPopupMode(QToolButton::InstantPopup);
    m_moreMenu->setPalette(palette());
    m_toolBar->addWidget(button);
    connect(m_moreAction, &QAction::triggered, button, &QToolButton::showMenu);
}

QTextEdit* EditMainWindow::editor() const
{
    return m_editor;
}

QAction* EditMainWindow::newAction() const
{
    return m_fileActions->newAction();
}

QAction* EditMainWindow::openAction() const
{
    return m_fileActions->openAction();
}

QAction* EditMainWindow::saveAction() const
{
    return m_fileActions->saveAction();
}

void EditMainWindow::keepDrafts(const QString& folder)
{
    settleHiddenWindow(); // pictures are measured against the width of the page
    m_drafts = new DraftKeeper(m_editor, folder, this);
    m_fileActions->offerDrafts(m_drafts);
    m_drafts->restore();
}

bool EditMainWindow::writeDraft()
{
    return !m_drafts || m_drafts->writeNow();
}

void EditMainWindow::initFont()
{
    QFont font = m_currentFont;
    font.setPointSize(kInitialPointSize);
    font.setHintingPreference(kSheetHinting);
    m_editor->setFont(font); // also for lines that lose their own format, such as an emptied page
    setCurrentFont(font);
}

void EditMainWindow::chooseFont()
{
    bool confirmed = false;
    const QFont font = QFontDialog::getFont(&confirmed, m_currentFont, this, tr("字体"));
    if (confirmed)
        setCurrentFont(font);
}

void EditMainWindow::setCurrentFont(const QFont& font)
{
    m_currentFont = font;
    // The dialog names the style ("Regular"), which would win over a later bold or italic.
    QFont plain = font;
    plain.setStyleName(QString());
    plain.setHintingPreference(kSheetHinting);
    QTextCharFormat format;
    format.setFont(plain);
    m_editor->mergeCurrentCharFormat(format);
}

void EditMainWindow::slotsInsertPixmap(QPixmap pixmap)
{
    slotsInsertImage(pixmap.toImage());
}

void EditMainWindow::slotsInsertImage(QImage image)
{
    settleHiddenWindow();
    insertPicture(*m_editor, image, QDateTime::currentSecsSinceEpoch());
}

void EditMainWindow::printPage()
{
    QGuiApplication::inputMethod()->commit(); // a word that is still being composed belongs to the page
    settleHiddenWindow();
    const bool noPicture = !m_editor->toHtml().contains(QLatin1String("<img src"));
    emit signDoPrint(renderPage(*m_editor, printHeadWidth()), noPicture ? 1 : 0);
}

// A window that was never shown has not yet given the editor its size; grabbing makes Qt catch up on that.
void EditMainWindow::settleHiddenWindow()
{
    if (!isVisible())
        grab(QRect(0, 0, 1, 1));
}

QMenu* EditMainWindow::createContextMenu()
{
    auto* menu = new QMenu(this);
    menu->setPalette(palette());
    m_actions->fillMenu(*menu);
    menu->addSeparator();
    menu->addAction(m_fontAction);
    menu->addSeparator();
    menu->addActions({m_pictureAction, m_captureAction});
    menu->addSeparator();
    menu->addAction(m_printAction);
    return menu;
}

void EditMainWindow::showContextMenu(const QPoint& position)
{
    QMenu* menu = createContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(m_editor->viewport()->mapToGlobal(position));
}

void EditMainWindow::retranslate()
{
    m_actions->retranslate();
    m_fileActions->retranslate();
    m_printAction->setText(tr("打印"));
    m_fontAction->setText(tr("字体..."));
    m_pictureAction->setText(tr("插入图片..."));
    m_captureAction->setText(tr("截取屏幕"));
    m_moreAction->setText(tr("更多"));
    for (QAction* action : {m_printAction, m_fontAction, m_pictureAction, m_captureAction, m_moreAction})
        action->setToolTip(toolTipOf(*action));
}

void EditMainWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (m_actions && event->type() == QEvent::LanguageChange)
        retranslate();
}
