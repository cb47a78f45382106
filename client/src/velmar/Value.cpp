#include "orvane/velmar/Value.h"

namespace orvane::velmar {

Type typeOf(const Value& value) {
    return static_cast<Type>(value.index() + 1);
}

} // namespace orvane::velmar
