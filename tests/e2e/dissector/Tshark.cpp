#include "e2e/dissector/Tshark.h"

#include <stdexcept>

#include "support/Text.h"

namespace {

std::string quoted(const std::string& argument) {
    return "'" + argument + "'";
}

// tshark warns when it runs as root, which is fine in a test.
bool isWarningOfRoot(const std::string& line) {
    return line.starts_with("Running as user \"root\"");
}

// The name of the severity before a text of the form "(Note/Protocol): text".
std::string severityOf(const std::string& line) {
    const std::size_t begin = line.find('(') + 1;
    return line.substr(begin, line.find('/') - begin);
}

} // namespace

std::vector<std::string> runCommand(const std::string& command) {
    const std::string output = outputOf(command);
    if (output.find("Lua: Error") != std::string::npos ||
        output.find("Lua Error") != std::string::npos) {
        throw std::runtime_error(command + ": " + output);
    }
    std::vector<std::string> lines = linesOf(output);
    std::erase_if(lines, isWarningOfRoot);
    return lines;
}

std::vector<std::string> runTshark(const std::filesystem::path& capture,
                                   const std::vector<std::string>& arguments) {
    std::string command = "WIRESHARK_CONFIG_DIR=no-settings TZ=UTC LC_ALL=C.UTF-8 " +
                          quoted(TSHARK) + " -n -X " + quoted("lua_script:" DISSECTOR) + " -r " +
                          quoted(capture.string());
    for (const std::string& argument : arguments) {
        command += " " + quoted(argument);
    }
    return runCommand(command + " 2>&1");
}

std::vector<std::string> fieldsOf(const std::filesystem::path& capture,
                                  const std::vector<std::string>& fields, const std::string& filter,
                                  std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-Y", filter, "-T", "fields", "-E", "separator=|"});
    for (const std::string& field : fields) {
        arguments.insert(arguments.end(), {"-e", field});
    }
    return runTshark(capture, arguments);
}

std::vector<std::string> infosOf(const std::filesystem::path& capture,
                                 const std::vector<std::string>& arguments) {
    return fieldsOf(capture, {"_ws.col.Info"}, "orvane", arguments);
}

std::vector<std::string> expertsOf(const std::filesystem::path& capture, const std::string& filter,
                                   std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-Y", filter, "-V", "-O", "orvane"});
    std::vector<std::string> experts;
    std::string frame;
    for (const std::string& line : runTshark(capture, arguments)) {
        if (line.starts_with("Frame ")) {
            frame = line.substr(6, line.find(':') - 6);
        }
        const std::size_t begin = line.find("[Expert Info ");
        const std::size_t text = line.find("): ", begin);
        if (begin != std::string::npos && text != std::string::npos) {
            experts.push_back(frame + " " + severityOf(line.substr(begin)) + ": " +
                              line.substr(text + 3, line.size() - text - 4));
        }
    }
    return experts;
}
