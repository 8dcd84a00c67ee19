#pragma once

class MainWindow;

/// Closes the client when a set-up asks for it, which is about to replace or remove the program: at the next idle moment
/// and with the draft written, as a mandatory update does, and its other windows with it. Where the set-up has given up
/// by then, or the draft cannot be written, the client stays.
/// @param window  ends the heeding with its life
/// GUI thread. Does nothing where programs are replaced while they run.
void heedCloseRequests(MainWindow& window);
