#pragma once

#include "content/page/page_scaling.h"

#include <QImage>

class PageEditor;

/// The page of an editor as a picture for the print head: the lines break where they break on the screen, without
/// frame, scroll bars, selection or caret.
///
/// Afterwards the caret stands at the beginning of the document, nothing is selected, and the editor's size is fixed
/// to what it was; all else (undo history included) is as before. GUI thread.
///
/// @param widthDots  of the picture, 1 or more
/// @param plainRows  the most device rows that are grabbed and scaled in one piece; a higher page is put together from
///                   strips of at most so many rows. Another value than the default is for tests.
/// @return           device pixel ratio 1, every pixel opaque; null only when memory is lacking
QImage renderPage(PageEditor& editor, int widthDots, int plainRows = kPaintableRows);
