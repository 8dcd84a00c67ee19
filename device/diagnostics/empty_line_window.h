#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class TestSendEmptyLine;
}

class CommandSender;

/// Feeds as many blank lines as somebody types, a decimal number of which the wire takes 16 bits. Without a number or
/// a printer it does nothing. GUI thread.
class TestSendEmptyLine : public QWidget
{
    Q_OBJECT

public:
    explicit TestSendEmptyLine(QWidget* parent = nullptr);
    ~TestSendEmptyLine() override;

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void onSendClicked();

private:
    std::unique_ptr<Ui::TestSendEmptyLine> m_ui;
    CommandSender* m_sender; ///< of the window's form
};
