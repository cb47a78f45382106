#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "headless/xplm/data/Dataref.h"

namespace headless {

// Some elements of an array, from `first` on.
struct Elements {
    static constexpr int kAll = -1;

    int first = 0;
    int count = kAll;
};

// A dataref's value as text, for people and scripts: a number, numbers separated by commas, or the
// text of a byte dataref up to its first zero. Numbers are the shortest text that reads back the
// same. Of several types the most precise counts. Only arrays look at `elements`.
std::string formatDataref(const Dataref& dataref, const Elements& elements = {});

// Writes what formatDataref() would print; fewer elements than the dataref has set the first ones,
// a shorter text is followed by zeros. Throws std::invalid_argument for text of another shape.
void parseDataref(const Dataref& dataref, std::string_view text, const Elements& elements = {});

// Writes numbers; a whole-number dataref gets the nearest. Nothing is written to text.
void writeNumbers(const Dataref& dataref, std::span<const double> numbers,
                  const Elements& elements = {});

// How many elements an array has; none for a scalar or text.
std::optional<int> arraySize(const Dataref& dataref);

} // namespace headless
