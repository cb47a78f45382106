#include "headless/host/DatarefPlace.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "headless/lists/ParsedNumber.h"

namespace headless {

namespace {

std::optional<int> index(std::string_view text) {
    const auto number = parsedNumber<int>(text);
    return number.value_or(-1) >= 0 ? number : std::nullopt;
}

} // namespace

DatarefPlace::DatarefPlace(const DatarefTable& datarefs, const std::string& text)
    : name(text), dataref(datarefs.Lookup(text)) {
    if (dataref != nullptr) {
        return;
    }
    const std::size_t bracket = text.find('[');
    const bool hasElements = bracket != std::string::npos && text.back() == ']';
    dataref = hasElements ? datarefs.Lookup(text.substr(0, bracket)) : nullptr;
    if (dataref == nullptr) {
        throw std::invalid_argument("no such dataref: " + text);
    }
    chooseElements(text.substr(bracket + 1, text.size() - bracket - 2));
}

void DatarefPlace::chooseElements(const std::string& range) {
    const std::size_t colon = range.find(':');
    const bool isSingle = colon == std::string::npos;
    const std::optional<int> first = index(range.substr(0, colon));
    const std::optional<int> last =
        isSingle ? first : index(std::string_view(range).substr(colon + 1));
    if (!first.has_value() || !last.has_value() || (!isSingle && *last <= *first)) {
        throw std::invalid_argument(name + ": elements are [3] for one, [2:5] for 2, 3 and 4");
    }
    const std::optional<int> size = arraySize(*dataref);
    const int count = isSingle ? 1 : *last - *first;
    if (!size.has_value() || count > *size - *first) {
        throw std::invalid_argument(
            name + (size.has_value() ? ": the array has " + std::to_string(*size) + " elements"
                                     : ": the dataref is not an array"));
    }
    elements = {*first, count};
}

std::string DatarefPlace::Format() const {
    return dataref->IsLive() ? formatDataref(*dataref, elements) : "0";
}

void DatarefPlace::Parse(std::string_view text) const {
    if (dataref->IsLive()) {
        parseDataref(*dataref, text, elements);
    }
}

void DatarefPlace::Write(std::span<const double> numbers) const {
    if (dataref->IsLive()) {
        const auto most = elements.count == Elements::kAll
                              ? numbers.size()
                              : static_cast<std::size_t>(elements.count);
        writeNumbers(*dataref, numbers.first(std::min(numbers.size(), most)), elements);
    }
}

bool DatarefPlace::IsText() const {
    constexpr XPLMDataTypeID kNumbers =
        xplmType_Double | xplmType_Float | xplmType_Int | xplmType_FloatArray | xplmType_IntArray;
    return !dataref->Offers(kNumbers);
}

bool DatarefPlace::HasFloats() const {
    if (dataref->Offers(xplmType_Double | xplmType_Float | xplmType_Int)) {
        return dataref->Offers(xplmType_Float) && !dataref->Offers(xplmType_Double);
    }
    return dataref->Offers(xplmType_FloatArray);
}

std::string DatarefPlace::TypeText() const {
    const bool isFloat = dataref->Offers(xplmType_Double) || HasFloats();
    const std::optional<int> size = dataref->IsLive() ? arraySize(*dataref) : std::nullopt;
    const std::string type = isFloat ? "float" : "int";
    // A selection of elements has the type of one element, as in the tool.
    const bool isWholeArray = size.has_value() && elements.count == Elements::kAll;
    return isWholeArray ? type + "[" + std::to_string(*size) + "]" : type;
}

} // namespace headless
