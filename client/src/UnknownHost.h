#pragma once

#include "orvane/Errors.h"

namespace orvane::detail {

// There is no host of this name; waiting does not help.
class UnknownHost final : public ConnectError {
public:
    using ConnectError::ConnectError;
};

} // namespace orvane::detail
