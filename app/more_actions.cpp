#include "app/more_actions.h"

#include "app/globals/settings.h"
#include "app/language/language_switch.h"
#include "app/main_window.h"

#include <QActionGroup>
#include <QMenu>
#include <QPalette>

MoreActions::MoreActions(QMenu& menu, MainWindow& window)
    : QObject(&window)
    , m_window(window)
    , m_printer(new QAction(this))
    , m_languages(new QActionGroup(this))
{
    m_printer->setEnabled(false);
    menu.insertAction(menu.actions().value(0), m_printer);
    menu.insertSeparator(menu.actions().value(1));
    QPalette palette = menu.palette();
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x60, 0x60, 0x60)); // it is there to be read
    menu.setPalette(palette);
    connect(&menu, &QMenu::aboutToShow, this, [this] { m_printer->setText(m_window.printerState()); });
    // Each by its own name, which whoever looks for it can read.
    for (const auto& [code, name] : {std::pair(kLanguageChinese, QStringLiteral("中文")),
                                     std::pair(kLanguageEnglish, QStringLiteral("English"))}) {
        QAction* language = m_languages->addAction(name);
        language->setCheckable(true);
        language->setData(code);
    }
    connect(m_languages, &QActionGroup::triggered, this,
            [](const QAction* language) { switchLanguage(language->data().toString()); });
    menu.addActions(m_languages->actions());
    menu.addSeparator();
    m_update = menu.addAction(QString(), &window, &MainWindow::slotsAskForUpdate);
    m_about = menu.addAction(QString(), &window, &MainWindow::onMenuAboutClicked);
    retranslate();
}

void MoreActions::retranslate()
{
    m_printer->setText(m_window.printerState());
    for (QAction* language : m_languages->actions())
        language->setChecked(language->data().toString() == shownLanguage());
    m_update->setText(MainWindow::tr("检查更新"));
    m_about->setText(MainWindow::tr("关于羽毛盒"));
}
