#include "app/dialogs/qx_message_dialog.h"

#include "ui_qx_message_dialog.h"

#include <QPushButton>

namespace {
constexpr int kShownCharacters = 2000; ///< more than has room, and little enough to lay out at once
} // namespace

QXMessageDialog::QXMessageDialog(QWidget* parent)
    : QDialog(parent)
    , m_ui(new Ui::QXMessageDialog)
{
    m_ui->setupUi(this);
}

QXMessageDialog::~QXMessageDialog() = default;

void QXMessageDialog::setMessage(int code, QString msg)
{
    setText(QStringLiteral("code:%1 \n msg:%2").arg(QString::number(code), msg));
}

void QXMessageDialog::setText(const QString& text)
{
    m_ui->label->setText(text.left(kShownCharacters));
    m_ui->label->adjustSize();
}

void QXMessageDialog::setDefaultButton(QDialogButtonBox::StandardButton button)
{
    m_ui->buttonBox->button(button)->setDefault(true);
}
