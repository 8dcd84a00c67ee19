#pragma once

#include <vector>

/// What a failure of the port means to a person.
struct PortWords
{
    int failure;
    const char* text; ///< Chinese, of the translation context "PrinterState"; names what to do where one can
};

/// Those of which each system has its own words.
const std::vector<PortWords>& systemPortWords();
