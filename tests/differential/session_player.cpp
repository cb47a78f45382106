// Plays a session with the C++ client: reads a statement from each line of standard input and
// writes its result on a line of standard output. The Python client's tests play the same session
// with their client and compare the results.
//
// Statements are those of tests/vectors, with "; " between those that belong together:
//
//     define; input 1 int test/int; output 1 int test/int
//     exchange; item 1 5
//     register-dataref TYPE SIZE NAME
//     register-command NAME
//     read NAME
//     write NAME TYPE VALUE
//     run NAME ACTION
//     poll
//     presses

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "TarnelVectors.h"
#include "VectorWords.h"
#include "VelmarVectors.h"
#include "orvane/tarnel/Client.h"
#include "orvane/velmar/Client.h"

namespace {

using namespace orvane;

std::vector<WireWords> statementsIn(const std::string& line) {
    std::vector<WireWords> statements;
    std::size_t begin = 0;
    while (begin < line.size()) {
        const std::size_t end = std::min(line.find(';', begin), line.size());
        statements.push_back(wordsOf(line.substr(begin, end - begin)));
        begin = end + 1;
    }
    return statements;
}

std::string textOf(std::int32_t value) {
    return std::to_string(value);
}

std::string textOf(std::uint8_t value) {
    return std::to_string(value);
}

std::string textOf(bool value) {
    return value ? "1" : "0";
}

std::string textOf(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text;
}

template <typename T>
std::string textOf(const std::vector<T>& values) {
    std::string text;
    for (const T value : values) {
        text += (text.empty() ? "" : ",") + textOf(value);
    }
    return text;
}

template <typename... Types>
std::string textOf(const std::variant<Types...>& value) {
    return std::visit([](const auto& each) { return textOf(each); }, value);
}

std::string textOf(const tarnel::Answer& answer) {
    std::string text = "aircraft " + std::to_string(answer.aircraftId);
    for (const auto& [id, value] : answer.outputs) {
        text += " " + std::to_string(id) + "=" + textOf(value);
    }
    return text;
}

std::string textOf(const std::vector<velmar::CommandReport>& reports) {
    std::map<std::string, int> states;
    for (const auto& [name, state] : reports) {
        states[name] = static_cast<int>(state);
    }
    std::string text = "commands";
    for (const auto& [name, state] : states) {
        text += " " + name + "=" + std::to_string(state);
    }
    return text;
}

class Player {
public:
    std::string Play(const std::string& line) {
        const std::vector<WireWords> statements = statementsIn(line);
        const std::vector<WireWords> meaning(statements.begin() + 1, statements.end());
        const WireWords& words = statements.front();
        if (words.front() == "define") {
            return textOf(tarnelClient.define(definitionsOf(meaning)));
        }
        if (words.front() == "exchange") {
            return textOf(tarnelClient.exchange(itemsOf(meaning)));
        }
        return playVelmar(words);
    }

private:
    std::string playVelmar(const WireWords& words) {
        const std::string& verb = words.front();
        if (verb == "register-dataref") {
            velmarClient.registerDataref(
                {words.at(3), typeOfWord(words.at(1)), asNumber(words.at(2))});
        } else if (verb == "register-command") {
            velmarClient.registerCommand(words.at(1));
        } else if (verb == "read") {
            return textOf(velmarClient.read(words.at(1)));
        } else if (verb == "write") {
            velmarClient.write(words.at(1), valueOfWords(words.at(2), words.at(3)));
        } else if (verb == "run") {
            velmarClient.run(words.at(1), actionOfWord(words.at(2)));
        } else if (verb == "poll") {
            return textOf(velmarClient.poll());
        } else if (verb == "presses") {
            return textOf(velmarClient.pollPresses());
        } else {
            throw std::runtime_error("unknown statement " + verb);
        }
        return "done";
    }

    tarnel::Client tarnelClient;
    velmar::Client velmarClient;
};

std::string play(Player& player, const std::string& line) {
    try {
        return player.Play(line);
    } catch (const Refused&) {
        return "refused";
    } catch (const std::logic_error&) {
        return "invalid";
    } catch (const std::exception& error) {
        return std::string("error ") + error.what();
    }
}

} // namespace

int main() {
    try {
        Player player;
        for (std::string line; std::getline(std::cin, line);) {
            std::cout << play(player, line) << std::endl;
        }
    } catch (const std::exception& error) {
        std::cerr << "session_player: " << error.what() << '\n';
        return 1;
    }
}
