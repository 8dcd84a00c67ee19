#include "app/language/language_window.h"

#include "app/globals/model.h"
#include "app/globals/settings.h"
#include "app/globals/sheet_model.h"
#include "app/language/language_switch.h"
#include "ui_language_window.h"

#include <QComboBox>
#include <QEvent>
#include <QPushButton>

LanguageWindow::LanguageWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::LanguageWindow)
{
    m_ui->setupUi(this);
    // Connected last: to open the window must not change the model.
    m_ui->comboBoxDevices->addItems({modelName(0), modelName(1)});
    m_ui->comboBoxDevices->setCurrentIndex(g_modelIndex);
    connect(m_ui->buttonChinese, &QPushButton::clicked, this, &LanguageWindow::slotsTrZH_CN);
    connect(m_ui->buttonEnglish, &QPushButton::clicked, this, &LanguageWindow::slotsTrEn_WW);
    connect(m_ui->comboBoxDevices, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &LanguageWindow::slotsCBDevicesIndexChanged);
    // The model that the box shows already counts as well: what it shows is the one that is driven.
    connect(m_ui->comboBoxDevices, QOverload<int>::of(&QComboBox::activated), this,
            [](int index) { sheetModel().choose(modelName(index)); });
}

LanguageWindow::~LanguageWindow() = default;

void LanguageWindow::slotsTrEn_WW()
{
    switchLanguage(kLanguageEnglish);
}

void LanguageWindow::slotsTrZH_CN()
{
    switchLanguage(kLanguageChinese);
}

void LanguageWindow::slotsCBDevicesIndexChanged(int index)
{
    Q_UNUSED(index) // the name decides
    g_modelIndex = modelIndex(m_ui->comboBoxDevices->currentText());
}

void LanguageWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this); // the models are no texts of the form and stay
    QWidget::changeEvent(event);
}
