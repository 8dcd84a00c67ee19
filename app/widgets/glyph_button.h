#pragma once

#include <QToolButton>

/// A tool button whose icon is painted straight onto it. Stock buttons paint a pixmap, which is enlarged, and
/// blurred, on dense screens as long as the application does not ask for dense pixmaps.
class GlyphButton : public QToolButton
{
    Q_OBJECT

public:
    /// Shows and invokes the action.
    explicit GlyphButton(QAction* action, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
