#pragma once

#include <span>
#include <string>
#include <string_view>

#include "headless/host/DatarefText.h"
#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// A dataref, or some elements of an array, as users write it: NAME, NAME[3], or NAME[2:5] for the
// elements 2, 3 and 4.
//
// Borrows the dataref. If its plugin unregisters it, it reads 0 and drops writes, as for a plugin
// that holds the handle.
class DatarefPlace final {
public:
    // Throws std::invalid_argument if the dataref or element does not exist.
    DatarefPlace(const DatarefTable& datarefs, const std::string& text);

    // As the user wrote it.
    const std::string& Name() const { return name; }
    const headless::Dataref& Dataref() const { return *dataref; }

    std::string Format() const;
    // Throws std::invalid_argument if the text does not match the dataref's type.
    void Parse(std::string_view text) const;
    // Excess elements are dropped.
    void Write(std::span<const double> numbers) const;

    bool IsText() const;
    // Floats, not doubles.
    bool HasFloats() const;
    // "int", "float[8]"; doubles count as floats here. The type in a recording's column header.
    std::string TypeText() const;

private:
    void chooseElements(const std::string& range);

    std::string name;
    const headless::Dataref* dataref = nullptr;
    Elements elements;
};

} // namespace headless
