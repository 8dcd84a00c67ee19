#pragma once

#include <QIcon>
#include <QPalette>

/// What is drawn on the buttons of the editor's toolbar.
enum class Glyph { Undo, Redo, Bold, Italic, Underline, AlignLeft, AlignCenter, AlignRight, Larger, Smaller };

/// Icon drawn anew for every size and device pixel ratio, in the palette's colours for button text.
QIcon toolbarIcon(Glyph glyph, const QPalette& palette);
