// docs/troubleshooting.md explains every line that the plugin can log. The lines are read from its
// sources.

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/Text.h"
#include "tools/orvane/plugin/LogLines.h"
#include "tools/orvane/plugin/TroubleshootingPage.h"

namespace {

namespace fs = std::filesystem;

using orvane::tool::plugin::Explanation;
using orvane::tool::plugin::explanationsOn;
using orvane::tool::plugin::Pieces;

enum class Level { Error, Warning, Verbose };

using Messages = std::map<Pieces, Level>;

// The text without the comments that begin with two slashes.
std::string withoutComments(const std::string& source) {
    std::string text;
    for (const std::string& line : linesOf(source)) {
        const std::size_t comment = line.find("//");
        text += line.substr(0, comment) + "\n";
    }
    return text;
}

// Code between the literals of a statement, and the literals: code, literal, code, literal, code.
using Statement = std::vector<std::string>;

std::vector<Statement> statementsOf(const std::string& source) {
    std::vector<Statement> statements{{""}};
    bool isLiteral = false;
    for (std::size_t i = 0; i < source.size(); ++i) {
        const char character = source[i];
        const bool isQuote = character == '"' && !(i > 0 && source[i - 1] == '\'');
        if (isQuote) {
            isLiteral = !isLiteral;
            statements.back().emplace_back();
        } else if (!isLiteral && (character == ';' || character == '{' || character == '}')) {
            statements.push_back({""});
        } else {
            statements.back().back() += character;
        }
    }
    return statements;
}

bool hasWord(const std::string& code) {
    return std::any_of(code.begin(), code.end(),
                       [](unsigned char letter) { return std::isalnum(letter) != 0; });
}

bool isLeveled(const std::string& literal) {
    for (const char* const word :
         {"Error@", "FATAL@", "Warning@", "WARNING@", "Verbose@", "VERBOSE@"}) {
        if (literal.starts_with(word)) {
            return true;
        }
    }
    return false;
}

std::string codeOf(const Statement& statement) {
    std::string code;
    for (std::size_t i = 0; i < statement.size(); i += 2) {
        code += statement[i];
    }
    return code;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// The first literal of a message, or the end.
std::size_t beginOfMessage(const Statement& statement, bool isLogged) {
    for (std::size_t i = 1; i < statement.size(); i += 2) {
        if (isLogged || isLeveled(statement[i])) {
            return i;
        }
    }
    return statement.size();
}

Pieces piecesFrom(const Statement& statement, std::size_t begin) {
    Pieces pieces{statement[begin]};
    for (std::size_t i = begin + 1; i + 1 < statement.size(); i += 2) {
        if (hasWord(statement[i])) {
            pieces.push_back(statement[i + 1]);
        } else {
            pieces.back() += statement[i + 1];
        }
    }
    if (hasWord(statement.back())) {
        pieces.emplace_back();
    }
    return pieces;
}

Level levelOf(const std::string& code) {
    if (contains(code, "LogLevelVerbose") || contains(code, "logVerbose(")) {
        return Level::Verbose;
    }
    return contains(code, "LogLevelWarning") ? Level::Warning : Level::Error;
}

// What the sources of the plugin pass to the logging service.
class PluginSources final {
public:
    PluginSources() {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(SOURCE_FOLDER))) {
            if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h") {
                file = entry.path().filename().string();
                for (const Statement& statement :
                     statementsOf(withoutComments(contentOf(entry.path())))) {
                    collect(statement);
                }
            }
        }
    }

    Messages messages;
    // Files that log what they do not write there.
    std::multiset<std::string> indirect;

private:
    void collect(const Statement& statement) {
        const std::string code = codeOf(statement);
        const bool isDefinition = contains(code, "void ");
        const bool isLogged =
            !isDefinition && (contains(code, "->Log(") || contains(code, "logIfEnabled(") ||
                              contains(code, "logVerbose("));
        const std::size_t begin = beginOfMessage(statement, isLogged);
        if (begin == statement.size()) {
            if (isLogged) {
                indirect.insert(file);
            }
            return;
        }
        Pieces pieces = piecesFrom(statement, begin);
        if (contains(code, "logVerbose(")) {
            pieces.front() = kVerboseOfConnection + pieces.front();
        }
        if (contains(code, "reportSocketError(")) {
            pieces.emplace_back();
        }
        add(pieces, levelOf(code));
    }

    void add(const Pieces& pieces, Level level) {
        if (pieces == Pieces{kVerboseOfConnection, ""}) {
            return; // what logVerbose puts in front
        }
        if (pieces.front() != "FATAL@") {
            messages.emplace(pieces, level);
            return;
        }
        // The only line with the name of a class, of which there are two.
        for (const char* const name : {"XPlaneDataRef", "VelmarDataRef"}) {
            Pieces named(pieces.begin() + 1, pieces.end());
            named.front() = pieces.front() + name + named.front();
            messages.emplace(named, level);
        }
    }

    const std::string kVerboseOfConnection = "Verbose@TcpConnection::ProcessEvents : ";
    std::string file;
};

Level levelOfHeading(const std::string& heading) {
    if (heading == "## The verbose log") {
        return Level::Verbose;
    }
    return heading == "## Warnings" ? Level::Warning : Level::Error;
}

Messages messagesOnPage() {
    Messages messages;
    const std::string page = contentOf(std::string(DOCS_FOLDER) + "/troubleshooting.md");
    for (std::size_t begin = page.find("\n## "); begin != std::string::npos;) {
        const std::size_t end = page.find("\n## ", begin + 1);
        const std::string chapter = page.substr(begin + 1, end - begin - 1);
        const Level level = levelOfHeading(chapter.substr(0, chapter.find('\n')));
        for (const Explanation& explanation : explanationsOn(chapter)) {
            for (const Pieces& message : explanation.messages) {
                EXPECT_TRUE(messages.emplace(message, level).second) << message.front();
            }
        }
        begin = end;
    }
    return messages;
}

TEST(TroubleshootingPageTest, HasEveryLineOfThePluginInTheChapterOfItsLevel) {
    const PluginSources sources;
    const Messages page = messagesOnPage();
    EXPECT_GE(sources.messages.size(), 65U);
    for (const auto& [message, level] : sources.messages) {
        const auto found = page.find(message);
        ASSERT_NE(found, page.end()) << "not on the page: " << testing::PrintToString(message);
        EXPECT_EQ(found->second, level) << message.front();
    }
    for (const auto& [message, level] : page) {
        EXPECT_TRUE(sources.messages.contains(message))
            << "not in the sources: " << testing::PrintToString(message);
    }
}

// If this fails, a line reaches the log in a new way: let the test above read it, too.
TEST(TroubleshootingPageTest, KnowsAllWaysToTheLog) {
    EXPECT_EQ(PluginSources().indirect,
              (std::multiset<std::string>{"LogMessage.h", "RingBuffer.cpp", "TcpServer.cpp"}));
}

TEST(TroubleshootingPageTest, IsWhatTheToolHasBuiltIn) {
    EXPECT_TRUE(orvane::tool::plugin::troubleshootingPage() ==
                contentOf(std::string(DOCS_FOLDER) + "/troubleshooting.md"));
}

TEST(TroubleshootingPageTest, SaysWhatHappenedWhyAndWhatToDo) {
    for (const Explanation& explanation :
         explanationsOn(orvane::tool::plugin::troubleshootingPage())) {
        for (const std::string& text : {explanation.happened, explanation.why, explanation.toDo}) {
            EXPECT_TRUE(text.ends_with('.')) << explanation.messages.front().front();
        }
    }
}

} // namespace
