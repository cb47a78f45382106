#include "VelmarVectors.h"

#include <string>

#include <gtest/gtest.h>

#include "UnexpectedAnswer.h"
#include "VectorWords.h"
#include "velmar/Wire.h"

namespace {

using namespace orvane;
using detail::ByteReader;
using detail::ByteWriter;
using detail::UnexpectedAnswer;

const std::map<std::string, velmar::Type> kTypes{{"int", velmar::Type::Int},
                                                 {"float", velmar::Type::Float},
                                                 {"byte", velmar::Type::Byte},
                                                 {"int-array", velmar::Type::IntArray},
                                                 {"float-array", velmar::Type::FloatArray}};
const std::map<std::string, velmar::Action> kActions{
    {"once", velmar::Action::Once}, {"begin", velmar::Action::Begin}, {"end", velmar::Action::End}};
const std::map<std::string, velmar::CommandState> kStates{
    {"up", velmar::CommandState::Up},
    {"down", velmar::CommandState::Down},
    {"pressed", velmar::CommandState::Pressed}};

velmar::Dataref datarefOf(const WireWords& words) {
    return {words.at(5), typeOfWord(words.at(3)), asNumber(words.at(4))};
}

void expectPoll(ByteReader& reader, const WireWords& words) {
    const auto entries = velmar::wire::readPollReply(reader);
    ASSERT_EQ(entries.size(), words.size() - 2);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string& word = words[i + 2];
        EXPECT_EQ(entries[i].number, asNumber(word));
        EXPECT_EQ(entries[i].state, lookUp(kStates, word.substr(word.find('=') + 1)));
    }
}

} // namespace

velmar::Type typeOfWord(const std::string& word) {
    return lookUp(kTypes, word);
}

velmar::Action actionOfWord(const std::string& word) {
    return lookUp(kActions, word);
}

velmar::Value valueOfWords(const std::string& type, const std::string& value) {
    switch (typeOfWord(type)) {
    case velmar::Type::Int:
        return asInt(value);
    case velmar::Type::Float:
        return std::stof(value);
    case velmar::Type::Byte:
        return static_cast<std::uint8_t>(asInt(value));
    case velmar::Type::IntArray:
        return asNumbers<std::int32_t>(value);
    case velmar::Type::FloatArray:
        break;
    }
    return asNumbers<float>(value);
}

void writePacket(ByteWriter& writer, const WireWords& words, VectorDatarefs& datarefs) {
    namespace wire = velmar::wire;
    const std::string& type = words.at(1);
    const std::uint32_t number = type == "poll" ? 0 : asNumber(words.at(2));
    if (type == "register-dataref") {
        wire::writeRegisterDataref(writer, number, datarefOf(words));
        datarefs[number] = datarefOf(words);
    } else if (type == "unregister-dataref") {
        wire::writeUnregisterDataref(writer, number);
    } else if (type == "register-command") {
        wire::writeRegisterCommand(writer, number, words.at(3));
    } else if (type == "unregister-command") {
        wire::writeUnregisterCommand(writer, number);
    } else if (type == "read") {
        wire::writeRead(writer, number);
    } else if (type == "write") {
        wire::writeWrite(writer, number, valueOfWords(words.at(3), words.at(4)));
    } else if (type == "run") {
        wire::writeRun(writer, number, actionOfWord(words.at(3)));
    } else {
        ASSERT_EQ(type, "poll");
        wire::writePoll(writer);
    }
}

// The library never reads or unregisters an unknown number.
void expectReply(ByteReader& reader, const WireWords& words, const VectorDatarefs& datarefs) {
    namespace wire = velmar::wire;
    const std::string& type = words.at(1);
    if (type == "poll") {
        expectPoll(reader, words);
        return;
    }
    const std::uint32_t number = asNumber(words.at(2));
    const bool isRefused = words.at(3) == "refused";
    if (type == "register-dataref") {
        EXPECT_EQ(wire::readRegisterDatarefReply(reader, number), !isRefused);
    } else if (type == "register-command") {
        EXPECT_EQ(wire::readRegisterCommandReply(reader, number), !isRefused);
    } else if (type == "unregister-dataref") {
        wire::readUnregisterDatarefReply(reader, number);
    } else if (type == "unregister-command") {
        EXPECT_EQ(wire::readUnregisterCommandReply(reader, number), !isRefused);
    } else if (type == "write") {
        wire::readWriteReply(reader, number);
    } else if (type == "read" && !isRefused) {
        const velmar::Dataref dataref{"any", typeOfWord(words.at(3)),
                                      static_cast<std::uint32_t>(listOf(words.at(4)).size())};
        EXPECT_EQ(wire::readReadReply(reader, number, dataref),
                  valueOfWords(words.at(3), words.at(4)));
    } else {
        const velmar::Dataref& dataref = datarefs.begin()->second;
        EXPECT_THROW(wire::readReadReply(reader, number, dataref), UnexpectedAnswer);
        reader.readUInt32(); // what the failure is of
    }
}
