#pragma once

#include <QTextEdit>

/// The sheet of paper on which the page is composed: white with black ink whatever the desktop's colours, and always
/// as wide as it will be printed.
///
/// Pasted and dropped pictures and picture files are inserted as insertPicture() does; a file that does not load is
/// ignored. Pictures within pasted text keep their size up to the width of the page, and their line as long as they fit
/// on it.
class PageEditor : public QTextEdit
{
    Q_OBJECT

public:
    explicit PageEditor(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    void insertPictureFiles(const QList<QUrl>& urls);
    void noteChange(int position, int removed, int added);
    void separatePictures();

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

private:
    PageEditor* m_editor;
};
