#pragma once

#include <QString>

/// Name under which an installer is saved unless the person says otherwise, from two texts of the service. It is one
/// that Linux and Windows both take: no path, nothing hidden, at most 100 characters, and an ending that is what it
/// seems. An honest name stays as it is.
/// @return  "<category><code>.exe"
QString installerName(const QString& category, const QString& code);
