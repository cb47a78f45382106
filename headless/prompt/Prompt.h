#pragma once

#include <deque>
#include <optional>
#include <string>

#include "headless/host/ILineSource.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Lines that a user types at the terminal of standard input, with editing, a saved history, and Tab
// completion of names. Reads keys only when they were pressed, so the flight continues meanwhile.
// Blank lines are skipped.
//
// The library that it uses has one line at a time for the whole process, so there can be only one
// Prompt. Borrows the simulator.
class Prompt final : public ILineSource {
public:
    // True if standard input and output are terminals.
    static bool IsPossible();

    explicit Prompt(Simulator& promptSimulator);
    ~Prompt() override;

    void Fill() override;
    // Shows the prompt if no line is waiting.
    std::optional<std::string> Next() override;
    bool AtEnd() const override { return ended && lines.empty(); }
    int Descriptor() const override;
    void Close() override;

private:
    static void onLine(char* line);
    static char** complete(const char* word, int begin, int end);

    void take(const char* line);
    void show();
    void hide();

    Simulator& simulator;
    std::string historyFile;
    std::deque<std::string> lines;
    bool isShown = false;
    bool ended = false;
};

} // namespace headless
