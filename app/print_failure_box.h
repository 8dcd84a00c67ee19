#pragma once

class QString;
class QWidget;

/// Tells the user why a page was not printed, and returns once that is read. GUI thread.
/// @param text   what the job said
/// @param cause  one line below it
void showPrintFailureBox(QWidget& window, const QString& text, const QString& cause);
