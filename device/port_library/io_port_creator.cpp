#include "device/port.h"
#include "device/port_library/port_library.h"

#include <QCoreApplication>

namespace {

/// Beside the program and nowhere else, for a search path can be made to lead to another file of that name. Never
/// destroyed, which is what keeps the library loaded: threads may be in it until the process ends.
PortLibrary& portLibrary()
{
    static PortLibrary& library =
        *new PortLibrary(QCoreApplication::applicationDirPath() + QLatin1String("/portio.dll"));
    return library;
}

} // namespace

extern "C" int io_port_creator(port** out, const char* kind)
{
    return portLibrary().create(out, kind);
}
