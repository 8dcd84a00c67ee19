#pragma once

// What only the client as a process of its own can tell.

/// Until the page is on the screen, in an empty folder of settings: of a program that has been started before.
void measureStart(int runs);

/// Over the virtual USB bus, from the page on the screen until the printer has told its model.
void measureReady(int runs);

/// Processor time and memory of a client that nobody touches, its caret blinking.
/// @param plugged  over the virtual USB bus, whose library in the process costs more than the client: for it a transfer
///                 that waits is asked for again and again, where a kernel lets it sleep
void measureIdle(bool plugged, int seconds);
