#pragma once

#include <optional>
#include <string>

#include "headless/scenario/Arguments.h"
#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// What a dataref is compared with: "NAME == VALUE", with != < <= > >= as well, and for == and != a
// tolerance, "within E". Arrays are equal when all elements are; text is equal or not.
class Condition final {
public:
    // Takes it from the arguments. Throws std::invalid_argument when it is malformed.
    explicit Condition(Arguments& arguments);

    // As it was written.
    const std::string& Text() const { return text; }

    // What the dataref is instead; nothing when the condition holds. Throws std::invalid_argument
    // for numbers that cannot be compared as it says.
    std::optional<std::string> Otherwise(const DatarefTable& datarefs) const;

private:
    enum class Operator { Equal, Unequal, Less, AtMost, Greater, AtLeast };

    static Operator readOperator(const std::string& word);
    bool holdsForText(const std::string& got) const;
    bool holdsForNumbers(const std::string& got, bool isFloat) const;
    bool areEqual(double got, double wanted, bool isFloat) const;
    bool isInOrder(double got, double wanted) const;

    std::string text;
    std::string name;
    Operator comparison = Operator::Equal;
    std::string value;
    std::optional<double> tolerance;
};

} // namespace headless
