#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "headless/xplm/data/Dataref.h"

namespace headless {

// A range of an array's elements, starting at `first`.
struct Elements {
    static constexpr int kAll = -1;

    int first = 0;
    int count = kAll;
};

// A dataref's value as text, for people and scripts: a number, numbers separated by commas, or the
// text of a byte dataref up to its first zero. Numbers are the shortest text that reads back the
// same. If the dataref has several types, the most precise one is used. `elements` matters for
// arrays only.
std::string formatDataref(const Dataref& dataref, const Elements& elements = {});

// Writes text in the format of formatDataref(). Fewer elements than the dataref has set the first
// ones; a shorter text is padded with zeros. Throws std::invalid_argument if the text does not
// match the dataref's type.
void parseDataref(const Dataref& dataref, std::string_view text, const Elements& elements = {});

// Writes numbers; an integer dataref gets the nearest integer. Does nothing for text.
void writeNumbers(const Dataref& dataref, std::span<const double> numbers,
                  const Elements& elements = {});

// The number of elements of an array; empty for a scalar or text.
std::optional<int> arraySize(const Dataref& dataref);

} // namespace headless
