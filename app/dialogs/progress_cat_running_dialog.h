#pragma once

#include <QDialog>

#include <memory>
#include <optional>

namespace Ui {
class Progress_Cat_Running_Dialog;
}

/// A cat that runs while the person has to wait. Frameless and always on top; only the program closes it, and closing
/// hides it: Esc and the window manager's close do nothing, since nobody would then clear what is being waited for.
/// Once it is hidden the cat stands still, so that dialogs that are left behind cost nothing. It does not keep the
/// program running. It is shown without being activated, and hands on what activation it gets, so that one can go on
/// writing. GUI thread.
class ProgressCatRunningDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ProgressCatRunningDialog(QWidget* parent = nullptr);
    ~ProgressCatRunningDialog() override;

    /// Where these dialogs stand from now on: over the middle of that window while it is there, and else in the middle
    /// of the screen. It gets the activation of theirs.
    static void standOver(QWidget* window);

    /// Says what is being waited for, in one line below the cat. The text stays when the language changes. The dialog
    /// keeps its size: what is wider than 135 pixels begins further left, what is wider than 155 is cut at its edge.
    void setText(QString text);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void cutOut();
    QWidget* clientInSight() const;
    void placeOverClient();
    void startAnimation();
    void setAnimated(bool animated);

    std::unique_ptr<Ui::Progress_Cat_Running_Dialog> m_ui;
    std::optional<QString> m_text; ///< nothing until setText(): the form's own text shows
};
