#pragma once

#include <QString>

/// What the service knows this client by; also the kind of software whose newest version it is asked for.
extern const QString kClientIdentity;
/// Version of this client; the service offers what has a greater one.
constexpr int kClientVersionCode = 100;
