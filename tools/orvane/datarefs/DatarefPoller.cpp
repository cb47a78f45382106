#include "tools/orvane/datarefs/DatarefPoller.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <variant>

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds kGuessInterval(1);

template <typename Number>
bool isSameNumber(Number one, Number other) {
    return one == other || (one != one && other != other);
}

bool isSame(const velmar::Value& one, const velmar::Value& other) {
    if (one.index() != other.index()) {
        return false;
    }
    return std::visit(
        [&]<typename T>(const T& left) {
            const T& right = std::get<T>(other);
            if constexpr (std::is_arithmetic_v<T>) {
                return isSameNumber(left, right);
            } else {
                return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                                  isSameNumber<typename T::value_type>);
            }
        },
        one);
}

} // namespace

std::vector<std::size_t> changesBetween(const std::vector<velmar::Value>& before,
                                        const std::vector<velmar::Value>& after) {
    std::vector<std::size_t> changed;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (i >= before.size() || !isSame(before[i], after[i])) {
            changed.push_back(i);
        }
    }
    return changed;
}

DatarefPoller::DatarefPoller(velmar::Client& client, std::vector<DatarefArgument> arguments,
                             Types types)
    : reader(client, std::move(arguments)), types(types) {}

void DatarefPoller::Poll() {
    if (types == Types::Open && steady_clock::now() - guessedAt >= kGuessInterval) {
        reader.TryAnotherType();
        guessedAt = steady_clock::now();
    }
    std::vector<velmar::Value> latest = reader.Read();
    changed = changesBetween(values, latest);
    values = std::move(latest);
}

} // namespace orvane::tool
