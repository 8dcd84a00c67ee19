#pragma once

#include <QImage>

// What the contests work on. Print heads are 384 and 576 dots wide.

/// Smooth shades with a little noise, as a photograph has them: the hard case for branch prediction.
QImage photograph(int width, int height);

/// Black strokes with soft edges on white paper.
QImage pageOfText(int width, int height);
