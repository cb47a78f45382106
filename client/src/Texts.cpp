#include "Texts.h"

#include <cstddef>

namespace orvane::detail {

std::string listed(std::span<const std::string> names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) {
            text += i + 1 == names.size() ? " and " : ", ";
        }
        text += names[i];
    }
    return text;
}

} // namespace orvane::detail
