#pragma once

#include <QToolButton>

/// A tool button whose icon is sharp on dense screens. Stock buttons enlarge the ordinary picture there as long as the
/// application does not ask for dense ones.
class GlyphButton : public QToolButton
{
    Q_OBJECT

public:
    /// Shows and invokes the action.
    explicit GlyphButton(QAction* action, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
