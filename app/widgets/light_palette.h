#pragma once

#include <QPalette>

/// The colours of the client's windows: white, dark ink and pale blue, light on every desktop, as the paper is.
QPalette lightPalette();
