#include "tools/orvane/datarefs/ElementRange.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <variant>
#include <vector>

#include <fmt/core.h>

#include "headless/lists/ParsedNumber.h"

namespace orvane::tool {

namespace {

using velmar::Value;

template <typename Element>
auto at(const std::vector<Element>& array, std::uint32_t place) {
    return array.begin() + static_cast<std::ptrdiff_t>(place);
}

template <typename Element>
Value partOf(const std::vector<Element>& array, const ElementRange& range) {
    if (range.isSingle) {
        return array[range.first];
    }
    return std::vector<Element>(at(array, range.first), at(array, range.End()));
}

template <typename Element>
void putInto(std::vector<Element>& array, const Value& value, const ElementRange& range) {
    if (range.isSingle) {
        array[range.first] = std::get<Element>(value);
        return;
    }
    const auto& elements = std::get<std::vector<Element>>(value);
    std::copy(elements.begin(), elements.end(), array.begin() + range.first);
}

} // namespace

Value ElementRange::Of(const Value& array) const {
    if (const auto* const whole = std::get_if<std::vector<std::int32_t>>(&array)) {
        return partOf(*whole, *this);
    }
    return partOf(std::get<std::vector<float>>(array), *this);
}

void ElementRange::Put(const Value& value, Value& array) const {
    if (auto* const whole = std::get_if<std::vector<std::int32_t>>(&array)) {
        putInto(*whole, value, *this);
    } else {
        putInto(std::get<std::vector<float>>(array), value, *this);
    }
}

ElementRange parseElementRange(std::string_view text, std::uint32_t mostElements) {
    const std::size_t colon = text.find(':');
    const bool isSingle = colon == std::string_view::npos;
    const std::optional<std::uint32_t> first =
        headless::parsedNumber<std::uint32_t>(text.substr(0, colon));
    const std::optional<std::uint32_t> last =
        isSingle ? first : headless::parsedNumber<std::uint32_t>(text.substr(colon + 1));
    if (!first || !last) {
        throw std::invalid_argument("write [3] for one element, or [2:5] for elements 2 to 4");
    }
    if (!isSingle && *last <= *first) {
        throw std::invalid_argument(fmt::format("[{}] has no elements", text));
    }
    if (isSingle ? *first >= mostElements : *last > mostElements) {
        throw std::invalid_argument(
            fmt::format("only the first {} elements are available", mostElements));
    }
    return {*first, isSingle ? 1 : *last - *first, isSingle};
}

} // namespace orvane::tool
