#pragma once

/// What the service knows this client by; also the kind of software whose newest version it is asked for.
constexpr char kClientIdentity[] = "com.quillbox.featherbox.win.app";
/// Version of this client; the service offers what has a greater one.
constexpr int kClientVersionCode = 100;
