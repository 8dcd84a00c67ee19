#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class AboutQuillboxDialog;
}

/// Product, version, maker, and a link to the maker's site, which opens in the person's browser. Always on top; Esc
/// closes it, and the link is reached by Tab. GUI thread.
class AboutQuillboxDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutQuillboxDialog(QWidget* parent = nullptr);
    ~AboutQuillboxDialog() override;

    /// What this client calls its version, "V1.0.0".
    static QString version();

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void openLink(const QString& link);

private:
    void setComposedTexts();

    std::unique_ptr<Ui::AboutQuillboxDialog> m_ui;
};
