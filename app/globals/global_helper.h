#pragma once

/// Process-wide singleton without state.
class GlobalHelper
{
public:
    /// Always the same object. Any thread. Every call but the first leaves one byte behind, see the source.
    static GlobalHelper* instance();

private:
    GlobalHelper() = default;
};
