#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "Bytes.h"
#include "orvane/tarnel/Answer.h"
#include "orvane/tarnel/Client.h"
#include "orvane/tarnel/Definitions.h"

// The messages of the protocol; docs/tarnel.md has the layouts.
namespace orvane::tarnel::wire {

inline constexpr std::size_t kFrameSize = 4;        // the length before an answer
inline constexpr std::size_t kDefinitionsSize = 24; // of a request without records
inline constexpr std::size_t kInputSize = 488;
inline constexpr std::size_t kOutputSize = 116;
inline constexpr std::size_t kAircraftSize = 12;
inline constexpr std::size_t kVersionAnswerSize = 12;

// Whole requests, with the identification.
detail::Bytes versionRequest();
detail::Bytes definitionsRequest(const Definitions& definitions);
detail::Bytes dataRequest(std::span<const Item> items);

// Bytes of an output in an answer, with an aircraft loaded; or without one, if that is longer.
std::size_t entrySize(const Output& output);
std::size_t longestEntry(const Output& output);
// Bytes of the payload without an aircraft, which is the longer one.
std::size_t longestAnswer(std::span<const Output> outputs);

// Decode the payload of an answer. detail::UnexpectedAnswer.
Version readVersion(std::span<const std::uint8_t> payload);
Answer readAnswer(std::span<const std::uint8_t> payload, std::span<const Output> outputs);

} // namespace orvane::tarnel::wire
