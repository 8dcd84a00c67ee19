#include "tests/usb/bench.h"

void startBench() {}
