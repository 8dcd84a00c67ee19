#pragma once

#include <QImage>

/// A picture with the tones of a photograph: an evening sky over hills and a lake, with film grain. The same pixels
/// at every call.
QImage landscapePicture(const QSize& size);
