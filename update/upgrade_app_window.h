#pragma once

#include "cloud/models/get_sw_version_model.h"

#include <QWidget>

#include <memory>

namespace Ui {
class UpgradeAppWindow;
}

/// Offers a newer version: its name, its release notes as plain text, and the download of its installer. Whether the
/// update is mandatory changes nothing here. Esc closes it. GUI thread.
class UpgradeAppWindow : public QWidget
{
    Q_OBJECT

public:
    explicit UpgradeAppWindow(QWidget* parent = nullptr);
    ~UpgradeAppWindow() override;

    /// What to offer. Of texts that are too long for anyone to read, the beginning is shown.
    void setModel(const GetSWVersionModel& model);

public slots:
    /// Asks where the installer goes. With an answer an UpgradeDialog downloads it, and this window closes.
    void onUpdate();

protected:
    void changeEvent(QEvent* event) override;

private:
    void showVersion();
    void showNotes();

    std::unique_ptr<Ui::UpgradeAppWindow> m_ui;
    GetSWVersionModel m_model;
};
