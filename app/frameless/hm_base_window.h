#pragma once

#include <QWidget>

class HMTitleBar;

/// Frameless window on a rounded sand-coloured ground, whose corners let the desktop through, with a strip to drag it
/// by. GUI thread.
class HMBaseWindow : public QWidget
{
    Q_OBJECT

public:
    explicit HMBaseWindow(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

    /// The strip, at the window's top left; its size is for the subclass to set. Owned by the window.
    HMTitleBar* titleBar() const { return m_titleBar; }

private:
    HMTitleBar* m_titleBar;
};
