#pragma once

#include <QImage>
#include <QString>

/// Proposes a name for a paper saved now: "quillbox-paper-20261124-183200.png".
QString paperFileName();

/// Writes the paper as a PNG of 8 dots a millimetre, one bit a dot. A file of that name is replaced only once the new
/// one is whole.
/// @return  what went wrong, in the words of the system or of the picture writer; empty when it is written
QString writePaper(const QImage& paper, const QString& file);
