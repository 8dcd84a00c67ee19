#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class TestMainItem;
}

/// One row of a diagnostic list. GUI thread.
class TestMainItem : public QWidget
{
    Q_OBJECT

public:
    explicit TestMainItem(QWidget* parent = nullptr);
    ~TestMainItem() override;

    /// Shows "<number> -> <label>".
    void setEntry(int number, const QString& label);
    /// Shows "<label> :0x<code>", of the code the lowest byte as two hexadecimal digits.
    void setCommand(const QString& label, int code);

private:
    std::unique_ptr<Ui::TestMainItem> m_ui;
};
