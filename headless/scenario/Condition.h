#pragma once

#include <optional>
#include <string>

#include "headless/scenario/Arguments.h"
#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// A comparison of a dataref: "NAME == VALUE", or with != < <= > >=. With == and != it can have a
// tolerance, "within E". Arrays are equal if all elements are; text can only be equal or not.
class Condition final {
public:
    // Reads the condition from the arguments. Throws std::invalid_argument if it is malformed.
    explicit Condition(Arguments& arguments);

    // The condition as it was written.
    const std::string& Text() const { return text; }

    // The dataref's actual value if the condition does not hold, otherwise empty. Throws
    // std::invalid_argument if the values cannot be compared in this way.
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
