#pragma once

#include <QTextCursor>

class QTextEdit;
class QTextImageFormat;

// Where a picture does not fit on its line any more, Qt moves it to the next one but counts it into the height of the line
// that it left, so that text stands alone in the middle of a gap as high as the picture. On a page no picture is ever
// moved so: it gets a paragraph of its own before. GUI thread.

/// Inserts a picture as a paragraph of its own, in place of the cursor's selection. Text that followed goes on below. One
/// undo step.
/// @param cursor  is then below the picture, at the beginning of what followed
void insertPictureParagraph(QTextCursor& cursor, const QTextImageFormat& picture);

/// Gives each picture that does not fit beside the text before it a paragraph of its own, as part of the last undo step.
/// The caret stays where it is in the text.
/// @param from, to  positions in the document; their paragraphs and those between them are looked at
void separateMovedPictures(QTextEdit& editor, int from, int to);
