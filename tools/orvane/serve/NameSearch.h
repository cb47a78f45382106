#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/orvane/find/NameLists.h"

namespace orvane::tool {

// Finds what the page offers while one types a name, in the simulator's lists.
class NameSearch final {
public:
    // Of each kind.
    static constexpr std::size_t kMostAnswers = 25;

    explicit NameSearch(NameLists lists);

    // {"datarefs":[{"name":"NAME:TYPE","text":"..."}],"commands":[{"name":"...","text":"..."}]}:
    // those whose name contains the text, whatever the case of its letters, then those whose
    // description does. Datarefs that the protocol cannot transfer are left out. Failure: it is not
    // a text to look for.
    std::string Matching(const std::string& text) const;

private:
    const NameLists lists;
};

// Whether a page may look for it: 1 to 100 characters, plain and not those of a glob.
bool isSearchText(std::string_view text);

} // namespace orvane::tool
