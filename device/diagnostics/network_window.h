#pragma once

#include <QString>
#include <QVector>
#include <QWidget>

#include <memory>

namespace Ui {
class TestNetworkWindow;
}

class BaseApi;

/// Calls the cloud service by hand, and shows what was sent and what came, the cipher text beside the plain text. A
/// password shows only as the digest that is sent. GUI thread; nothing blocks.
class TestNetworkWindow : public QWidget
{
    Q_OBJECT

public:
    explicit TestNetworkWindow(QWidget* parent = nullptr);
    ~TestNetworkWindow() override;

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void onLoginClicked();
    void onCheckVersionClicked();
    void showEntry(int row);

private:
    /// What one line of the list stands for.
    struct Entry
    {
        QString plain;
        QString cipher;
    };

    void watch(BaseApi* call);
    void addEntry(const QString& title, const QString& plain, const QString& cipher);
    void setBusy(bool busy);

    std::unique_ptr<Ui::TestNetworkWindow> m_ui;
    QVector<Entry> m_entries; ///< in the order of the list, the newest at the end
};
