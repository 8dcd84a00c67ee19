#pragma once

#include <QString>

class QSettings;

// What every program of the client does around its main window. GUI thread.

/// Before the application object is made: pictures as dense as the screen, and windows without OpenGL.
void setUpHighDpi();

/// After it: icon, installation identifier, language.
/// @param settings  the store (kOrganization, kApplication), which the caller keeps until the event loop has ended
void startUp(QSettings& settings);

/// Ends main(), once windows, settings and application are destroyed. Where a thread still waits for the printer, the
/// process ends in here, and what the thread uses stays until then.
/// @param threadsEnded  as MainWindow::stopThreads() says
/// @return              result
int leaveMain(int result, bool threadsEnded);

/// Where the client keeps drafts of pages, among the person's application data; made when the first is written.
QString draftsFolder();
