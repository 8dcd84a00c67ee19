#include "tests/usb/bench.h"

void startBench() {}

const bool kOverUsb = false;
