#include "device/port.h"
#include "simulator/port_library/paper_file.h"
#include "simulator/simulated_port.h"

#include <QtGlobal>

#include <cstring>

namespace {

/// The simulated port, which also keeps the file of the paper. Nothing of it is made before a client asks for its port,
/// and nothing destroyed.
class PaperPort : public port
{
public:
    PaperPort()
        : port(*simulatedPort())
    {
        const QString model = qEnvironmentVariable("QUILLBOX_SIMULATED_MODEL");
        const bool wide = model.compare(QLatin1String("K2"), Qt::CaseInsensitive) == 0;
        simulatedPrinter().reset(wide ? SimulatedPrinter::Model::K2 : SimulatedPrinter::Model::K1);
        const QString paper = qEnvironmentVariable("QUILLBOX_SIMULATED_PAPER");
        if (paper.isEmpty())
            return;
        static PaperFile& file = *new PaperFile(simulatedPrinter(), paper);
        read = [](port* self, unsigned char* buffer, int offset, int capacity, int* received) {
            file.keepUp();
            return simulatedPort()->read(self, buffer, offset, capacity, received);
        };
    }
};

PaperPort& paperPort()
{
    static PaperPort& thePort = *new PaperPort;
    return thePort;
}

} // namespace

extern "C" int io_port_creator(port** out, const char* kind)
{
    if (!out || !kind || std::strcmp(kind, "USB") != 0)
        return portNumber(SimulatedPrinter::kBadArgument);
    PaperPort& opened = paperPort();
    const int result = openSimulatedPort();
    if (result == 0)
        *out = &opened;
    return result;
}
