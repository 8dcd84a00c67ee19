#pragma once

#include <QComboBox>

class QTextEdit;

/// Shows the size at the caret of an editor in points, blank for a selection of several, and takes another one:
/// typed, with Return, or chosen from the list of usual sizes. Esc, or a click elsewhere, gives up what was typed. The
/// editor has the keyboard again afterwards; without a click the box never takes it.
///
/// Sizes go from kSmallestPoints to kLargestPoints, by tenths. Anything else is refused: the old size comes back.
class FontSizeBox : public QComboBox
{
    Q_OBJECT

public:
    /// @param editor  has to outlive the box
    explicit FontSizeBox(QTextEdit& editor, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void stepText(int direction);
    void showSize();
    void followEditor();
    void applyText();
    void leave();
    void retranslate();

    QTextEdit& m_editor;
};
