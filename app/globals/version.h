#pragma once

// The version of this client. The one place for it is the project's version in the uppermost CMakeLists.txt, which is
// also that of the desktop's metainfo. A build with QUILLBOX_VERSION is another one, for a test of the update to it.

/// As people read it: "1.0.0".
extern const char kClientVersion[];
/// As the service counts: 100 is 1.0.0, and it offers what has a greater one.
extern const int kClientVersionCode;
