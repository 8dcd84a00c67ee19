#pragma once

// The client's own main window on the display, over a printer in this process.

/// From the click on "print" to the first frame of the page at the port. Prints two rows a page: until the first frame,
/// and how long the window does nothing else.
void measureClicks(int runs);

/// As measureIdle(), connected, without a USB bus in software, whose library costs more than the client.
void measureIdleWindow(int seconds);
