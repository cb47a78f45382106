#include "headless/prompt/Prompt.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

// Needs stdio.h to be included first.
#include <editline/readline.h>

#include "headless/host/LineReader.h"
#include "headless/host/TerminalSettings.h"
#include "headless/scenario/Completion.h"

namespace headless {

namespace {

constexpr const char* kPrompt = "headless-sim> ";
constexpr const char* kHistory = "/.headless-sim_history";
constexpr int kMostHistory = 1000;
constexpr const char* kBlanks = " \t";

// The prompt for the library's callbacks.
Prompt* current = nullptr;

std::string homeFile(const char* name) {
    const char* const home = std::getenv("HOME");
    return home == nullptr ? std::string() : std::string(home) + name;
}

// A name that can continue gets no blank after it.
void endWordUnlessItGoesOn(const std::vector<std::string>& completions) {
    const bool goesOn = completions.size() == 1 && completions.front().ends_with('/');
    constexpr int kNothing = 0;
    constexpr int kBlank = 32;
    rl_completion_append_character = goesOn ? kNothing : kBlank;
}

// The completions that the library asks for, one after the other.
std::vector<std::string> offered;

// The library frees the result.
char* nextOffered(const char* /*word*/, int state) {
    const auto place = static_cast<std::size_t>(state);
    return place < offered.size() ? ::strdup(offered[place].c_str()) : nullptr;
}

} // namespace

bool Prompt::IsPossible() {
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDOUT_FILENO) == 1;
}

Prompt::Prompt(Simulator& promptSimulator)
    : simulator(promptSimulator), historyFile(homeFile(kHistory)) {
    current = this;
    keepTerminalSettings();
    // The run handles signals.
    rl_catch_signals = 0;
    rl_catch_sigwinch = 0;
    rl_readline_name = "headless-sim";
    rl_basic_word_break_characters = kBlanks;
    rl_attempted_completion_function = &Prompt::complete;
    using_history();
    stifle_history(kMostHistory);
    if (!historyFile.empty()) {
        read_history(historyFile.c_str());
    }
}

Prompt::~Prompt() {
    Close();
    current = nullptr;
}

void Prompt::Close() {
    if (isShown) {
        hide();
        // Further output starts on a new line.
        std::fputc('\n', stdout);
        std::fflush(stdout);
    }
    if (!historyFile.empty()) {
        write_history(historyFile.c_str());
    }
}

void Prompt::Fill() {
    while (isShown && isReadable(STDIN_FILENO)) {
        rl_callback_read_char();
    }
}

std::optional<std::string> Prompt::Next() {
    if (lines.empty()) {
        show();
        return std::nullopt;
    }
    std::string line = std::move(lines.front());
    lines.pop_front();
    return line;
}

int Prompt::Descriptor() const {
    return STDIN_FILENO;
}

void Prompt::show() {
    if (!isShown && !ended) {
        rl_callback_handler_install(kPrompt, &Prompt::onLine);
        isShown = true;
    }
}

void Prompt::hide() {
    rl_callback_handler_remove();
    isShown = false;
}

// The prompt comes back after the reply.
void Prompt::take(const char* line) {
    hide();
    if (line == nullptr) {
        ended = true;
        std::fputc('\n', stdout);
        std::fflush(stdout);
    } else if (line[std::strspn(line, kBlanks)] != '\0') {
        add_history(line);
        lines.emplace_back(line);
    }
}

void Prompt::onLine(char* line) {
    const std::unique_ptr<char, decltype(&std::free)> owned(line, &std::free);
    current->take(line);
}

char** Prompt::complete(const char* word, int begin, int /*end*/) {
    const std::string before(rl_line_buffer, static_cast<std::size_t>(begin));
    offered = completionsOf(current->simulator, before, word);
    endWordUnlessItGoesOn(offered);
    // If there are no completions, do not offer file names.
    rl_attempted_completion_over = 1;
    return rl_completion_matches(word, &nextOffered);
}

} // namespace headless
