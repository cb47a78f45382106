#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "orvane/velmar/Client.h"
#include "support/WireVectors.h"

// The statements of Velmar's vectors, in the library's terms. Datarefs are known by their
// registered numbers.
using VectorDatarefs = std::map<std::uint32_t, orvane::velmar::Dataref>;

orvane::velmar::Type typeOfWord(const std::string& word);
orvane::velmar::Action actionOfWord(const std::string& word);
orvane::velmar::Value valueOfWords(const std::string& type, const std::string& value);

void writePacket(orvane::detail::ByteWriter& writer, const WireWords& words,
                 VectorDatarefs& datarefs);

// Reads the reply that the statement describes. Throws detail::UnexpectedAnswer for any other.
void expectReply(orvane::detail::ByteReader& reader, const WireWords& words,
                 const VectorDatarefs& datarefs);
