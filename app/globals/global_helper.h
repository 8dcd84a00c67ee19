#pragma once

/// Process-wide singleton without state.
class GlobalHelper
{
public:
    /// Always the same object. Any thread. Every call but the first leaks one byte.
    static GlobalHelper* instance();

private:
    GlobalHelper() = default;
};
