#include "headless/prompt/ConsoleInput.h"

#include <unistd.h>

#include "headless/host/LineReader.h"
#include "headless/prompt/Prompt.h"

namespace headless {

std::unique_ptr<ILineSource> makeConsoleInput(Simulator& simulator, bool isConsole) {
    if (isConsole && Prompt::IsPossible()) {
        return std::make_unique<Prompt>(simulator);
    }
    return std::make_unique<LineReader>(STDIN_FILENO);
}

} // namespace headless
