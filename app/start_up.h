#pragma once

class QSettings;

// What every program of the client does around its main window. GUI thread.

/// Before the application object is made.
void setUpHighDpi();

/// After it: icon, installation identifier, language.
/// @param settings  the store (kOrganization, kApplication), which the caller keeps until the event loop has ended
void startUp(QSettings& settings);
