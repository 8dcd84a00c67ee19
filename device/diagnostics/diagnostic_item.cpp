#include "device/diagnostics/diagnostic_item.h"

#include "ui_diagnostic_item.h"

TestMainItem::TestMainItem(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::TestMainItem)
{
    m_ui->setupUi(this);
}

TestMainItem::~TestMainItem() = default;

void TestMainItem::setEntry(int number, const QString& label)
{
    m_ui->label->setText(QStringLiteral("%1 -> %2").arg(QString::number(number), label));
}

void TestMainItem::setCommand(const QString& label, int code)
{
    const QString digits = QStringLiteral("%1").arg(code & 0xff, 2, 16, QLatin1Char('0'));
    m_ui->label->setText(QStringLiteral("%1 :0x%2").arg(label, digits));
}
