#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class LanguageWindow;
}

/// Switches the language of the running program, which the settings then keep, and the model to print for. GUI thread.
class LanguageWindow : public QWidget
{
    Q_OBJECT

public:
    explicit LanguageWindow(QWidget* parent = nullptr);
    ~LanguageWindow() override;

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void slotsTrEn_WW();
    void slotsTrZH_CN();
    void slotsCBDevicesIndexChanged(int index);

private:
    std::unique_ptr<Ui::LanguageWindow> m_ui;
};
