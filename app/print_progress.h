#pragma once

#include <QTimer>
#include <QWidget>

class QAbstractButton;
class QProgressBar;

/// How much of a job has left: a thin bar with a button at its right end that cancels. GUI thread.
///
/// It lies over the top edge of another widget, moves nothing there, and takes neither the focus nor clicks that miss
/// bar and button.
class PrintProgress : public QWidget
{
    Q_OBJECT

public:
    /// @param below  what it lies over; its window becomes the owner
    explicit PrintProgress(QWidget* below);

    /// A job has begun or ended. It shows a moment after the beginning, so that a short job does not make it flash.
    void setRunning(bool running);
    /// @param sent, total  of one unit
    void setSent(int sent, int total);

signals:
    /// Once a job.
    void cancelRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void place();
    void retranslate();

    QWidget* m_below;
    QProgressBar* m_bar;
    QAbstractButton* m_cancelButton;
    QTimer m_delay;
};
