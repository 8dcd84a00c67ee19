#pragma once

#include <QTextEdit>

/// The sheet of paper on which the page is composed: white with black ink whatever the desktop's colours, and always
/// as wide as it will be printed.
///
/// Pasted and dropped pictures and picture files are inserted as insertPicture() does; a file that does not load is
/// ignored. Pictures within pasted text keep their size up to the width of the page, and their line as long as they fit
/// on it.
///
/// The sheet is as wide as a print head, a pixel a dot, and lies in the middle of the editor like a strip of paper.
class PageEditor : public QTextEdit
{
    Q_OBJECT

public:
    explicit PageEditor(QWidget* parent = nullptr);

    /// Text flows anew, and pictures that filled the sheet fill it again, without an undo step.
    /// @param width  pixels, 1 or more
    void setSheetWidth(int width);

    /// Whether the desk beside the sheet belongs to the editor, as on the screen. Without it the viewport is all of the
    /// editor but its bars, as for a print.
    void showDesk(bool shown);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    void layOutSheet();
    void paintDesk();
    void insertPictureFiles(const QList<QUrl>& urls);
    void noteChange(int position, int removed, int added);
    void separatePictures();

    int m_sheetWidth;
    bool m_deskShown = true;
    int m_changedFrom = -1; ///< what has changed since separatePictures(); -1: nothing
    int m_changedTo = -1;
};

/// Keeps a PageEditor filling it, as far as a fixed size of the editor allows. The editor's size does not reach the
/// layouts around, so that a print, which stretches the editor to the whole page for a moment, moves nothing.
class PageHolder : public QWidget
{
    Q_OBJECT

public:
    explicit PageHolder(PageEditor* editor, QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override; ///< beside the sheet, which scrolls it as well

private:
    PageEditor* m_editor;
};
