#pragma once

#include "app/globals/model.h"
#include "device/packet.h"
#include "device/printer_win.h"
#include "simulator/simulated_port.h"

#include <QtTest>

/// Model and "connected" flag, which a window sets once the model reply is there.
inline void setModel(int index, bool confirmed)
{
    g_modelIndex = index;
    g_modelConfirmed = confirmed;
}

/// The client and the simulated printer as at the start of the program.
inline void startOver(SimulatedPrinter::Model model = SimulatedPrinter::Model::K1)
{
    simulatedPrinter().reset(model);
    g_portOpen = g_printerReady = false;
    setModel(0, false);
    setCurrentCrcKey(kDefaultCrcKey);
}

inline unsigned char* bytesOf(QByteArray& bytes)
{
    return reinterpret_cast<unsigned char*>(bytes.data());
}
