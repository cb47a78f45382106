#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/orvane/cli/ExitCode.h"
#include "tools/orvane/cli/GlobalOptions.h"

namespace CLI {
class App;
}

namespace orvane::tool {

// What the chosen subcommand does, once the whole command line has been read. It may throw a
// Failure or an orvane::Error, which main turns into a line and an exit status.
using Work = std::function<ExitCode()>;

// How the help and the man page describe a subcommand.
struct Description {
    const char* name;
    const char* summary;
    // Paragraphs of lines of at most 80 characters. Lines that begin with two spaces are kept as
    // they are; the last paragraph has examples.
    const char* details;
};

// Where the tool's folders add their subcommands. `globals` is complete when the work runs. Borrows
// all three.
class Subcommands final {
public:
    Subcommands(CLI::App& parent, const GlobalOptions& globals, Work& chosen)
        : parent(parent), globals(globals), chosen(chosen) {}

    // Adds a subcommand. Declare its options on the result; `run` gets them.
    template <typename Options>
    std::pair<CLI::App&, Options&> Add(
        const Description& description,
        std::function<ExitCode(const GlobalOptions&, const Options&)> run) {
        const auto options = std::make_shared<Options>();
        CLI::App& command = add(description, [run = std::move(run), options, &all = globals] {
            return run(all, *options);
        });
        return {command, *options};
    }

    // Adds a subcommand that only has subcommands.
    Subcommands AddGroup(const Description& description);

    CLI::App& Parent() const { return parent; }

private:
    CLI::App& add(const Description& description, Work work);

    CLI::App& parent;
    const GlobalOptions& globals;
    Work& chosen;
};

// How a subcommand names its arguments.
struct Arguments {
    const char* name;
    const char* description;
    const char* type; // for the completions
};

// Declares that a subcommand needs at least one word.
void declareWords(CLI::App& command, std::vector<std::string>& words, const Arguments& arguments);

// Declares an option that names a file.
void declareFile(CLI::App& command, const std::string& option, std::string& file,
                 const std::string& description);

// Each function below adds one subcommand to the tool.
void addInfo(Subcommands& subcommands);
void addDiscover(Subcommands& subcommands);
void addFind(Subcommands& subcommands);
void addGet(Subcommands& subcommands);
void addSet(Subcommands& subcommands);
void addWatch(Subcommands& subcommands);
void addCommand(Subcommands& subcommands);
void addLatency(Subcommands& subcommands);
void addDrive(Subcommands& subcommands);
void addRecord(Subcommands& subcommands);
void addReplay(Subcommands& subcommands);
void addServe(Subcommands& subcommands);
void addConfig(Subcommands& subcommands);
void addPlugin(Subcommands& subcommands);
void addHelp(Subcommands& subcommands);

} // namespace orvane::tool
