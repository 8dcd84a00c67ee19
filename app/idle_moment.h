#pragma once

#include <functional>

class QObject;

/// Calls `then` once nobody is in the middle of something that a closing window would spoil: a dialog that waits for
/// its answer (and what the answer brings about, the saving of a page for one), an open menu, a picture being
/// dragged, the download of an update. At once where there is nothing of that kind.
/// @param context  without it nothing is called any more
/// GUI thread.
void atIdleMoment(QObject* context, const std::function<void()>& then);
