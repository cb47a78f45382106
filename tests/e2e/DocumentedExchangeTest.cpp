#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "e2e/EndToEndTest.h"
#include "support/Text.h"

// The exchanges on the pages of the protocols, byte by byte.

namespace {

// "client sends 8 bytes", "plugin answers 16 bytes", "description of 100 bytes" and the lines
// below: an offset, bytes and a remark, with zeros in the gaps. Below "plugin logs" is a line of
// the log.
struct DocumentedItem {
    std::string heading;
    std::size_t size = 0;
    Bytes bytes;
    std::string text;
};

// By section of the page.
using DocumentedPage = std::map<std::string, std::vector<DocumentedItem>>;

bool isHex(const std::string& word, std::size_t digits) {
    return word.size() == digits && word.find_first_not_of("0123456789ABCDEF") == std::string::npos;
}

// A remark may look like a byte; the next line's offset, or the size, cuts it off.
void addLine(DocumentedItem& item, const std::string& line) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (!isHex(word, 4)) {
        item.text += line;
        return;
    }
    item.bytes.resize(std::stoul(word, nullptr, 16));
    while (words >> word && isHex(word, 2)) {
        item.bytes.push_back(static_cast<unsigned char>(std::stoul(word, nullptr, 16)));
    }
}

DocumentedItem itemOf(const std::string& line) {
    std::istringstream words(line);
    std::string actor;
    std::string verb;
    std::size_t size = 0;
    words >> actor >> verb >> size;
    return {actor + " " + verb, size, {}, ""};
}

DocumentedPage readPage(const char* path) {
    DocumentedPage sections;
    std::string section;
    DocumentedItem* item = nullptr;
    for (const std::string& line : linesOf(contentOf(path))) {
        const bool isItem = line.starts_with("client sends ") ||
                            line.starts_with("plugin answers ") || line == "plugin logs" ||
                            line.starts_with("description of ");
        if (line.starts_with("##")) {
            section = line.substr(line.find(' ') + 1);
        } else if (isItem) {
            std::vector<DocumentedItem>& items = sections[section];
            item = &items.emplace_back(itemOf(line));
        } else if (line.empty() || line.starts_with("```")) {
            item = nullptr;
        } else if (item != nullptr) {
            addLine(*item, line);
        }
    }
    return sections;
}

class DocumentedExchangeTest : public EndToEndTest {
protected:
    DocumentedExchangeTest() {
        startSimulator();
        const Bytes& description = tarnelPage.at("The aircraft id").at(0).bytes;
        loadAircraft({description.begin(), description.end()});
        client.emplace();
    }

    // What the page describes between two requests happens before the request with that number.
    void replay(const std::vector<DocumentedItem>& items,
                const std::map<std::size_t, std::string>& commands = {}) {
        std::size_t requests = 0;
        for (DocumentedItem item : items) {
            item.bytes.resize(item.size);
            SCOPED_TRACE("request " + std::to_string(requests));
            if (item.heading == "client sends") {
                if (commands.contains(requests)) {
                    simulator->Ask(commands.at(requests));
                }
                client->Send(item.bytes);
                ++requests;
            } else if (item.heading == "plugin answers") {
                expectAnswer(item.bytes);
            } else {
                EXPECT_EQ(simulator->LastLogMessage(), item.text);
            }
        }
        EXPECT_GT(requests, 0U);
    }

    void expectAnswer(const Bytes& answer) {
        if (!answer.empty()) {
            EXPECT_EQ(toHex(client->AnswerFrame(*simulator)), toHex(answer));
            return;
        }
        ASSERT_TRUE(client->IsDelivered());
        simulator->Step(5);
        EXPECT_EQ(toHex(client->Received()), "");
    }

    DocumentedPage tarnelPage = readPage(TARNEL_PAGE);
    DocumentedPage velmarPage = readPage(VELMAR_PAGE);
    std::optional<TestClient> client;
};

TEST_F(DocumentedExchangeTest, DefinesAndDrivesWithTarnel) {
    const auto& items = tarnelPage.at("A whole exchange, byte by byte");
    ASSERT_EQ(items.size(), 10U);
    replay(items, {{3, "command begin kyr/example_button"}, {4, "aircraft unload"}});
}

TEST_F(DocumentedExchangeTest, TearsTarnelDefinitions) {
    replay(tarnelPage.at("A torn DEFINITIONS message"));
}

TEST_F(DocumentedExchangeTest, TearsTarnelData) {
    replay(tarnelPage.at("A torn DATA message"));
}

TEST_F(DocumentedExchangeTest, RegistersReadsAndRunsWithVelmar) {
    const auto& items = velmarPage.at("A whole exchange");
    ASSERT_EQ(items.size(), 12U);
    replay(items);
}

TEST_F(DocumentedExchangeTest, PollsAndRegistersAgainWithVelmar) {
    replay(
        {velmarPage.at("A whole exchange").begin(), velmarPage.at("A whole exchange").begin() + 2});
    replay(velmarPage.at("Command states"), {{0, "command once sim/lights/beacon_lights_on"}});
    // The state starts again.
    client->Send(fromHex("55 66 77 88 08 00 00 00"));
    expectAnswer(fromHex("04 00 00 00 00 00 00 00"));
}

TEST_F(DocumentedExchangeTest, LeavesBytesOfATornVelmarPacketUnread) {
    const auto& items = velmarPage.at("What becomes of unread bytes");
    ASSERT_EQ(items.size(), 8U);
    replay(items);
}

// MurmurHash3 x86_32 of whole words with seed 0, with `length` in the last step.
std::uint32_t murmurHash(const Bytes& bytes, std::uint32_t length) {
    std::uint32_t hash = 0;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        std::uint32_t word = 0;
        for (std::size_t j = 4; j > 0; --j) {
            word = word << 8U | bytes[i + j - 1];
        }
        word *= 0xCC9E2D51U;
        hash ^= (word << 15U | word >> 17U) * 0x1B873593U;
        hash = (hash << 13U | hash >> 19U) * 5 + 0xE6546B64U;
    }
    hash ^= length;
    hash = (hash ^ hash >> 16U) * 0x85EBCA6BU;
    hash = (hash ^ hash >> 13U) * 0xC2B2AE35U;
    return hash ^ hash >> 16U;
}

TEST(DocumentedHashTest, IsTheAircraftsIdOfTheTarnelPage) {
    DocumentedItem description = readPage(TARNEL_PAGE).at("The aircraft id").at(0);
    ASSERT_EQ(description.size, 100U);
    description.bytes.resize(description.size);
    EXPECT_EQ(murmurHash(description.bytes, 0), 0xA4572B5CU);
    EXPECT_EQ(murmurHash(description.bytes, 100), 0xE0C536BEU);
}

} // namespace
