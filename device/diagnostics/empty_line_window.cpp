#include "device/diagnostics/empty_line_window.h"

#include "device/diagnostics/command_sender.h"
#include "device/printer_win.h"
#include "ui_empty_line_window.h"

#include <QEvent>
#include <QRegularExpressionValidator>

TestSendEmptyLine::TestSendEmptyLine(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::TestSendEmptyLine)
{
    m_ui->setupUi(this);
    m_sender = new CommandSender(m_ui->notice);
    m_ui->lines->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]+$")), m_ui->lines));
    connect(m_ui->send, &QPushButton::clicked, this, &TestSendEmptyLine::onSendClicked);
    connect(m_ui->lines, &QLineEdit::returnPressed, m_ui->send, &QPushButton::click);
}

TestSendEmptyLine::~TestSendEmptyLine() = default;

void TestSendEmptyLine::onSendClicked()
{
    bool isNumber = false;
    const int lines = m_ui->lines->text().toInt(&isNumber);
    if (!isNumber)
        return;
    m_sender->run([lines] {
        if (printerConnection()->ensureConnected())
            printerConnection()->sendFeedLines(static_cast<std::uint16_t>(lines)); // the wire has 16 bits
    });
}

void TestSendEmptyLine::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
}
