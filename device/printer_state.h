#pragma once

#include <QString>

/// Keeps what an operation of the port gave: 0, or the number of its failure. Only a frame that went out may note 0;
/// nothing else shows that the cause is gone, for a printer without paper can be prepared as well, and still answers.
/// Any thread, no lock.
void notePortResult(int result);

/// The number that was noted last, by whichever thread. Any thread, no lock.
int lastPortFailure();
/// The one that this thread has noted last. Other threads may have brought the printer up again meanwhile.
int lastPortFailureOfThisThread();

/// What one would say of the printer in one line, "Printer: K2, ready", in the language of the moment. GUI thread.
/// @param portFailure   as it was noted; a number that means nothing here is shown as it is
/// @param isConnecting  it may still tell its model; counts where nothing has failed
/// @param toldModel     the name that it reported of itself since it was connected; empty when it has not
QString printerStateText(int portFailure, bool isConnecting, const QString& toldModel);
