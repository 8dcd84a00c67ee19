#pragma once

#include <array>

/// One entry of the command list.
struct DiagnosticCommand
{
    int code;          ///< CommandCode of a query, or kBlankLines
    const char* label; ///< to be translated in the context kDiagnosticContext
};

/// Stands in for a code: feeds kBlankLineCount blank lines instead of a query.
constexpr int kBlankLines = -1;
constexpr int kBlankLineCount = 100; ///< dot lines

constexpr const char* kDiagnosticContext = "TestDeviceCommandWindow";

/// Every command that the device window offers, in the order of its list.
const std::array<DiagnosticCommand, 21>& diagnosticCommands();
