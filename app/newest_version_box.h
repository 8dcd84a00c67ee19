#pragma once

class QWidget;

/// Says that there is no newer version than this one. Not modal, and it takes no keyboard: the answer may come when
/// the user is writing again. A box that is still open comes to the front in place of a second one. GUI thread.
void showNewestVersionBox(QWidget& window);
