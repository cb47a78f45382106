#include <sstream>
#include <string>
#include <vector>

#include "e2e/EndToEndTest.h"
#include "support/Text.h"

namespace {

// A message of the page: lines of an offset, bytes and a remark, with zeros in the gaps, and a last
// line with the length alone.
struct DocumentedMessage {
    bool fromClient = false;
    Bytes bytes;
};

bool isHex(const std::string& word, std::size_t digits) {
    return word.size() == digits && word.find_first_not_of("0123456789ABCDEF") == std::string::npos;
}

// A remark that begins like a byte is cut off again by the next line's offset.
void addLine(Bytes& bytes, const std::string& line) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    bytes.resize(std::stoul(word, nullptr, 16));
    while (words >> word && isHex(word, 2)) {
        bytes.push_back(static_cast<unsigned char>(std::stoul(word, nullptr, 16)));
    }
}

std::vector<DocumentedMessage> readPage() {
    std::vector<DocumentedMessage> messages;
    for (const std::string& line : linesOf(contentOf(TARNEL_PAGE))) {
        if (line == "client" || line == "server") {
            messages.push_back({line == "client", {}});
        } else if (!messages.empty() && isHex(line.substr(0, line.find(' ')), 4)) {
            addLine(messages.back().bytes, line);
        }
    }
    return messages;
}

class DocumentedExchangeTest : public EndToEndTest {
protected:
    // What happens in the simulator before a request, as the page tells.
    void prepare(std::size_t request) {
        if (request == 3) {
            simulator->Ask("command begin kyr/example_button");
        } else if (request == 4) {
            simulator->Ask("aircraft unload");
        }
    }
};

TEST_F(DocumentedExchangeTest, HappensAsTheTarnelPageShowsIt) {
    startSimulator();
    loadAircraft("Example aircraft");
    const std::vector<DocumentedMessage> messages = readPage();
    ASSERT_EQ(messages.size(), 10U);
    TestClient client;
    for (std::size_t i = 0; i < messages.size(); i += 2) {
        ASSERT_TRUE(messages[i].fromClient);
        ASSERT_FALSE(messages[i + 1].fromClient);
        prepare(i / 2);
        client.Send(messages[i].bytes);
        EXPECT_EQ(toHex(client.AnswerFrame(*simulator)), toHex(messages[i + 1].bytes))
            << "request " << i / 2;
    }
}

} // namespace
