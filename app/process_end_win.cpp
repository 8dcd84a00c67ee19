#include "app/process_end.h"

#include <windows.h>

#include <cstdlib>

/// _Exit() would kill the other threads and then have each library clear up, which may wait for a lock that one of them
/// held.
void endProcess(int result)
{
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(result));
    std::abort(); // is not reached
}
