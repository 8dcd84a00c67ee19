#pragma once

/// Where the port tells what happens to it, as far as it is linked into the program. One that is in a library of its
/// own has a log of its own, and nothing happens here. Whichever library the program links defines it.
/// @param sink  called with one line without a line end, from whichever thread uses the port, one call at a time
void setPortLog(void (*sink)(const char* line));
