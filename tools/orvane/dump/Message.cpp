#include "tools/orvane/dump/Message.h"

namespace orvane::tool::dump {

const char* markWord(MarkKind kind) {
    switch (kind) {
    case MarkKind::Torn:
        return "torn";
    case MarkKind::Unknown:
        return "unknown";
    case MarkKind::Odd:
        return "odd";
    case MarkKind::EndsSimulator:
        return "ends the simulator";
    case MarkKind::Missing:
        return "missing";
    }
    return "";
}

} // namespace orvane::tool::dump
