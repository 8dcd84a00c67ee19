#include "device/port.h"

/// Counts its calls, from 1 for every loading, where the arguments arrive as they were given.
extern "C" int io_port_creator(port** out, const char* kind)
{
    static port thePort = {};
    static int calls = 0;
    *out = &thePort;
    return kind[0] == 'U' && kind[3] == '\0' ? ++calls : -1;
}
