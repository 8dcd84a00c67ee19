#pragma once

#include <QImage>
#include <QString>

class QTextEdit;

/// Name of a picture that is inserted at a time: "capture_image_" and one character whose code is the number of
/// seconds modulo 65536. Pictures of the same second share a name, and the later one takes the earlier's place
/// (docs/architecture.md, "Kept behaviour").
QString pictureName(qint64 secondsSinceEpoch);

/// Scales a picture up or down to the room on the sheet (PictureRoom) and inserts it at the editor's cursor, in place of a selection, as
/// a paragraph of its own. What is typed below it looks like the text before it. One undo step.
/// @return false for a null picture, one of which nothing is left at that width and one that would be higher than
///         kPaintableRows; the page is then unchanged
bool insertPicture(QTextEdit& editor, const QImage& picture, qint64 secondsSinceEpoch);
