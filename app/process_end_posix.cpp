#include "app/process_end.h"

#include <cstdlib>

void endProcess(int result)
{
    std::_Exit(result);
}
