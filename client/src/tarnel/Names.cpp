#include "tarnel/Names.h"

#include <stdexcept>

namespace orvane::tarnel {

namespace {

constexpr std::size_t kLongestName = 99;

} // namespace

std::string checkedName(std::string name) {
    if (name.empty()) {
        throw std::invalid_argument("a name is empty");
    }
    if (name.size() > kLongestName) {
        throw std::invalid_argument("the name " + name + " has " + std::to_string(name.size()) +
                                    " bytes; at most 99 are allowed");
    }
    if (name.find('\0') != std::string::npos) {
        throw std::invalid_argument("the name " + std::string(name.c_str()) +
                                    " contains a zero byte");
    }
    return name;
}

std::int32_t checkedElement(std::int32_t element, const std::string& name) {
    if (element < 0) {
        throw std::invalid_argument("element " + std::to_string(element) + " of " + name +
                                    " does not exist");
    }
    return element;
}

} // namespace orvane::tarnel
