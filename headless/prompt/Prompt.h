#pragma once

#include <deque>
#include <optional>
#include <string>

#include "headless/host/ILineSource.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Lines that somebody types at the terminal of standard input: edited, with a history that lasts,
// and with names completed by the Tab key. Keys are read only when they were pressed, so that the
// flight goes on meanwhile. Blank lines are left out.
//
// The library behind it has one line at a time for the whole process, so there is one Prompt.
// Borrows the simulator.
class Prompt final : public ILineSource {
public:
    // True when standard input and output are terminals.
    static bool IsPossible();

    explicit Prompt(Simulator& promptSimulator);
    ~Prompt() override;

    void Fill() override;
    // Shows the prompt when there is no line.
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
