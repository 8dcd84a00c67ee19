#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class TestUpgradeWindow;
}

/// Offers an update that somebody types in, as if the cloud service had reported it. GUI thread.
class TestUpgradeWindow : public QWidget
{
    Q_OBJECT

public:
    explicit TestUpgradeWindow(QWidget* parent = nullptr);
    ~TestUpgradeWindow() override;

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void onOpenClicked();

private:
    std::unique_ptr<Ui::TestUpgradeWindow> m_ui;
};
