#include "tools/orvane/dump/AnswerFrame.h"

#include <algorithm>

namespace orvane::tool::dump {

namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kLongestPayload = 0x0FFFFFFB;

} // namespace

bool AnswerFrame::HasLength() const {
    return headerSize == kHeaderSize;
}

bool AnswerFrame::IsComplete() const {
    return HasLength() && payload.size() + missing >= length;
}

bool AnswerFrame::IsNonsense() const {
    return HasLength() && length > kLongestPayload;
}

void AnswerFrame::Take(ByteView& bytes) {
    while (!HasLength() && !bytes.empty()) {
        length |= std::size_t{bytes[0]} << (8 * headerSize++);
        bytes = bytes.subspan(1);
    }
    if (!HasLength() || IsComplete()) {
        return;
    }
    const std::size_t wanted = length - payload.size() - static_cast<std::size_t>(missing);
    const std::size_t taken = std::min(wanted, bytes.size());
    payload.insert(payload.end(), bytes.begin(),
                   bytes.begin() + static_cast<std::ptrdiff_t>(taken));
    bytes = bytes.subspan(taken);
}

bool AnswerFrame::Skip(std::uint64_t count) {
    if (!HasLength() || count > length - payload.size() - missing) {
        return false;
    }
    missing += count;
    return true;
}

void AnswerFrame::Reset() {
    *this = AnswerFrame();
}

} // namespace orvane::tool::dump
