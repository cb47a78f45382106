#pragma once

#include <span>
#include <string>
#include <string_view>

#include "headless/host/DatarefText.h"
#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// A dataref, or some elements of an array, as people name them: NAME, NAME[3], or NAME[2:5] for the
// elements 2, 3 and 4.
//
// Borrows the dataref, which its plugin may take away: it then reads 0 and drops what is written,
// as for a plugin that holds the handle.
class DatarefPlace final {
public:
    // Throws std::invalid_argument when there is no such dataref or element.
    DatarefPlace(const DatarefTable& datarefs, const std::string& text);

    // As the user named it.
    const std::string& Name() const { return name; }
    const headless::Dataref& Dataref() const { return *dataref; }

    std::string Format() const;
    // Throws std::invalid_argument for text of another shape.
    void Parse(std::string_view text) const;
    // Elements that are too many are dropped.
    void Write(std::span<const double> numbers) const;

    bool IsText() const;
    // Floats, not doubles.
    bool HasFloats() const;
    // "int", "float[8]"; doubles are floats here. What heads a column of a recording.
    std::string TypeText() const;

private:
    void chooseElements(const std::string& range);

    std::string name;
    const headless::Dataref* dataref = nullptr;
    Elements elements;
};

} // namespace headless
