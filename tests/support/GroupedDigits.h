#pragma once

#include <locale>
#include <string>

// Groups every digit, as some countries' locales group thousands.
class GroupedDigits final : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
};
