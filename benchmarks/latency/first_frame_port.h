#pragma once

#include <QtGlobal>

/// The port of this program: the simulated printer answers what the client asks, and a page ends here, so that nothing but
/// the client takes time. Steady nanoseconds.

/// When the first frame of a page was handed to the port since forgetFirstFrame(); 0: none yet.
qint64 firstFrameAt();
void forgetFirstFrame();
qint64 steadyNs();
