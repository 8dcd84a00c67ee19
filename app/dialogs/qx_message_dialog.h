#pragma once

#include <QDialog>
#include <QDialogButtonBox>

#include <memory>

namespace Ui {
class QXMessageDialog;
}

/// A message, which may come with a result code, and OK and Cancel. Shows plain text, whatever the network sent, and
/// of a long one the beginning. GUI thread.
class QXMessageDialog : public QDialog
{
    Q_OBJECT

public:
    explicit QXMessageDialog(QWidget* parent = nullptr);
    ~QXMessageDialog() override;

    /// Shows "code:<code> \n msg:<msg>", on two lines. The label takes the size of the text; the dialog keeps its own.
    void setMessage(int code, QString msg);
    /// Shows a text as it is. The label takes its size.
    void setText(const QString& text);
    /// Which button has the focus at first and is pressed by Return; OK unless told otherwise. Before it is shown.
    void setDefaultButton(QDialogButtonBox::StandardButton button);

private:
    std::unique_ptr<Ui::QXMessageDialog> m_ui;
};
