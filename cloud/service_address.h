#pragma once

#include <QString>

/// The address of the cloud service: what the name of a call is appended to, so it ends in "/". Each call reads it
/// when it is sent, and whoever wants another service writes it. Begins as the build's QUILLBOX_SERVICE_URL. GUI
/// thread.
QString& serviceAddress();
