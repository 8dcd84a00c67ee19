#pragma once

/// Puts the simulated printer where the port that the program links finds it: in the port itself, or on a USB bus.
/// What is done to the printer after that is seen by either port.
void startBench();

extern const bool kOverUsb;
