#include "device/port_log.h"

/// The library has no other export than that of its ports, and tells the system's debugger what happens to them.
void setPortLog(void (*)(const char* line)) {}
