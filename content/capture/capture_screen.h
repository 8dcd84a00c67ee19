#pragma once

#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QWidget>

class CaptureScreenWindow;
class QScreen;

/// A still picture of the primary screen, over the whole of it, from which the user drags out a rectangle.
///
/// The picture is taken by the constructor, which also shows the overlay; a caller who wants its own windows out of
/// the picture hides them before. The overlay serves one capture. Closing hides it and nothing deletes it: it belongs
/// to whoever made it, who deletes it after signalClose, from the event loop (deleteLater) and not inside the signal.
/// It neither keeps the program running nor ends it. GUI thread.
///
/// Where the screen cannot be grabbed (no X server, for example) a line of the log says so, nothing is ever shown,
/// and signalClose comes from the event loop, so that it also reaches who connects to it after construction.
class CaptureScreen : public QWidget
{
    Q_OBJECT

public:
    explicit CaptureScreen(QWidget* parent = nullptr);

    void setVisible(bool visible) override;

signals:
    /// The selected part of the screen, one pixel to a logical pixel, device pixel ratio 1. Never null. Sent before
    /// the overlay closes.
    void signalCompleteCature(QPixmap catureImage);

    /// The capture ended: sent once, on every way out, when the overlay has left the screen.
    void signalClose();

public slots:
    /// Leaves without a picture.
    void slotsClickClose();

    /// Hands the selection on, if there is one, and leaves.
    void slotsClickOK();

    /// Saves the selection to a file that the user names, as JPEG under whatever name, and leaves. Stays open when
    /// the user names none, and, after a message, when the file cannot be written: the selection would be lost.
    void slotsClickDownload();

protected:
    /// The file to save to. The default shows a dialog.
    /// @param proposal  path that the dialog starts with
    /// @return          empty when the user cancels
    virtual QString askForFileName(const QString& proposal);

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    enum class State {
        None = 0,
        Selecting = 1, // the left button is down
        Selected = 2,  // final: no further drag changes it
    };

    void takeScreen(QScreen& screen);
    QRect monitorInOverlay() const;
    QRect selection() const;
    QPixmap selectedPart() const;
    void drawSelection(QPainter& painter) const;
    void drawSizeHint(QPainter& painter) const;
    void drawFirstHint(QPainter& painter) const;
    void finishSelection();

    CaptureScreenWindow* const m_toolBar;
    QRect m_monitor;  // of the grabbed screen, in the desktop's coordinates
    QPixmap m_screen; // what stood there, in the monitor's logical pixels
    QPoint m_start;   // the ends of the drag, in the overlay's coordinates
    QPoint m_end;
    State m_state = State::None;
    bool m_left = false;
};
