#pragma once

#include <QImage>
#include <QString>

class QTextDocument;
class QTextEdit;

// A picture that fills the sheet of one model does not fit that of the other. A document therefore keeps each picture
// as it looks on every sheet, made from what was put in, and shows those of its own. GUI thread.

/// Room for pictures, pixels.
struct PictureRoom
{
    int width; ///< on the sheet of the moment
    int bar;   ///< what a sheet is wider than its pictures

    static PictureRoom of(const QTextEdit& editor);
};

enum class PictureFit {
    Fill,   ///< scaled up or down to the room
    Shrink, ///< scaled down where it is wider than the room; one that is just as wide fills
};

/// Adds a picture to the document's resources, for text that names it. A picture of that name is replaced.
/// @return false for a null picture, one of which nothing is left at its width, and one that is higher than
///         kPaintableRows there; the document is then unchanged
bool addSheetPicture(QTextDocument& document, const QString& name, const QImage& picture, PictureFit fit,
                     const PictureRoom& room);

/// Shows the document's pictures as they look on a sheet of that width. No undo step.
void showSheetPictures(QTextDocument& document, int sheetWidth);
