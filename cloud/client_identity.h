#pragma once

#include "app/globals/version.h" // kClientVersionCode, which the service is told with each call

/// What the service knows this client by; also the kind of software whose newest version it is asked for.
constexpr char kClientIdentity[] = "com.quillbox.featherbox.win.app";
