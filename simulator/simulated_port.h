#pragma once

#include "simulator/simulated_printer.h"

struct port;

/// The one printer of the process, made on first use, as after power-on. It is what io_port_creator() opens.
SimulatedPrinter& simulatedPrinter();

/// The port to simulatedPrinter(); one object, valid until the process ends and the same after every replug. A
/// connection dies when the printer is unplugged or reset: prepare() has to bring up the next one.
///
/// write() waits for a printer that holds back, and gives up after 10 s without progress; the writes after a failed one
/// fail as it did, until prepare(). That waits for the frame that is on its way, as opening does. read() returns at
/// once: what waits, or kPortTimedOut when nothing does. Any thread may call any operation, but a slot of the printer
/// may neither write nor prepare: it is called in the middle of a frame.
port* simulatedPort();

/// What opening the port does: connects to the printer as it is plugged in now.
/// @return  0, or kPortNoDevice
int openSimulatedPort();
