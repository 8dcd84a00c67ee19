#pragma once

#include "simulator/simulated_printer.h"

#include <QString>

/// Composes the sample page, prints it on the simulated printer by the whole road that the client uses, and writes
/// the paper as a PNG.
///
/// Reports on standard output what was printed and where the paper lies, and failures on standard error. Needs a
/// QApplication, not a display; runs an event loop until the job is done.
/// @param paperFile  path of the PNG; an existing file is replaced
/// @return           exit code: 0 for a page printed and written
int printSample(SimulatedPrinter::Model model, const QString& paperFile);
