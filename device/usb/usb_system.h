#pragma once

// What the port over USB does differently from system to system.

/// Where lines go until setUsbLog() is called: standard error, or where a program without a terminal is listened to.
void writeToSystemLog(const char* line);

/// Looks for a printer without opening anything, for the receiver asks every 2 s while there is none.
/// @return  false: none is plugged in, and to look closely is in vain
bool mayHavePrinter();

/// What to do about a failure that has another cause on each system.
/// @param failure  as of reportUsbFailure()
/// @return         a line for the log; null where the cause is the same everywhere
const char* systemAdvice(int failure);

/// Whether the number of bytes is right that a transfer has moved when its time is up. Only then may a write go on
/// behind them, and look in between whether anything moves.
bool cutTransfersAreCounted();

/// Whether objects may be destroyed as the process ends. In a library that is loaded that is the time when the other
/// threads have been killed, with the locks that they held, and to let go of a device would wait for ever.
bool threadsOutliveObjects();
