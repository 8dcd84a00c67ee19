#pragma once

class QNetworkAccessManager;

// The end of a network access manager whose transfer was given up, without waiting for more than 300 ms. GUI thread.
//
// Qt gives each manager a thread and waits 5 s for its end. That thread heeds nothing as long as a server sends
// headers without end, faster than it reads them. While it does not answer, the manager is left to itself, if need be
// to the end of the process, and holds up nobody.

/// Deletes the manager, whose signals have no slots any more. Not within a slot of one of its replies.
void releaseNetwork(QNetworkAccessManager* manager);
/// The same from anywhere; the event loop deletes it.
void releaseNetworkLater(QNetworkAccessManager* manager);
