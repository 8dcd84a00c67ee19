#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class QXMessageDialog;
}

/// A result code with its message, and OK and Cancel. GUI thread.
class QXMessageDialog : public QDialog
{
    Q_OBJECT

public:
    explicit QXMessageDialog(QWidget* parent = nullptr);
    ~QXMessageDialog() override;

    /// Shows "code:<code> \n msg:<msg>", on two lines. The label takes the size of the text, the dialog keeps its
    /// own.
    void setMessage(int code, QString msg);

protected:
    void changeEvent(QEvent* event) override;

private:
    std::unique_ptr<Ui::QXMessageDialog> m_ui;
};
