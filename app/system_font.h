#pragma once

/// Gives every window, and through them the page, the font in which the system shows its own messages. To be called
/// in the GUI thread, before the first window.
void useSystemFont();
