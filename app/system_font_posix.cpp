#include "app/system_font.h"

// The desktop's own font is there already.
void useSystemFont() {}
