// How a float parameter goes from its stored value to the number and the text that a user reads.
// Threads: set while the parameter is built, then read by any.
#pragma once

#include <string>
#include <string_view>

// shaped  = valueToShaped(value)
// display = shaped * shapedScale + shapedOffset
// unit    = displayToUnit(display * displayScale + displayOffset)
// The texts are literals: they outlive every parameter.
struct ParameterTextFormat {
    using Shape = double (*)(double) noexcept;
    using TextFunction = std::string (*)(double unit);

    static double identity(double x) noexcept { return x; }

    std::string_view separator = " ";       // between number and suffix
    std::string_view inputPrefix;           // skipped by the parser
    std::string_view numberFormat = "%.3f"; // for formatNumber
    std::string_view suffix;                // unit word
    TextFunction textFunction = nullptr;    // replaces formatNumber
    Shape valueToShaped = identity;
    Shape shapedToValue = identity;
    Shape displayToUnit = identity;
    Shape unitToDisplay = identity;
    double shapedScale = 1.0;
    double shapedOffset = 0.0;
    double displayScale = 1.0;
    double displayOffset = 0.0;
};
