#pragma once

/// Ends the process at once, without a destructor or a handler of any library, since threads still run that use them.
[[noreturn]] void endProcess(int result);
