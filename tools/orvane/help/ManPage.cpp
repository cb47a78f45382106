#include "tools/orvane/help/ManPage.h"

#include <cctype>
#include <sstream>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/core.h>

#include "tools/orvane/cli/CommandTree.h"
#include "tools/orvane/cli/HelpFormatter.h"

namespace orvane::tool {

namespace {

using Lines = std::vector<std::string>;

// Escapes text so that troff prints it instead of obeying it.
std::string literal(const std::string& text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
        case '\\':
            result += "\\e";
            break;
        case '-':
            result += "\\-";
            break;
        case '"':
            result += "\\(dq";
            break;
        default:
            result += character;
        }
    }
    const bool isRequest = result.starts_with('.') || result.starts_with('\'');
    return isRequest ? "\\&" + result : result;
}

std::string upperCase(std::string text) {
    for (char& letter : text) {
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    return text;
}

bool isIndented(const std::string& line) {
    return line.starts_with("  ");
}

// The paragraphs that follow the options in the help.
std::vector<Lines> paragraphsOf(const std::string& details) {
    std::vector<Lines> paragraphs(1);
    std::istringstream stream(details);
    for (std::string line; std::getline(stream, line);) {
        if (line.empty()) {
            paragraphs.emplace_back();
        } else {
            paragraphs.back().push_back(line);
        }
    }
    return paragraphs;
}

std::string linesFrom(const Lines& lines, std::size_t begin) {
    std::string text;
    bool isExample = false;
    for (std::size_t i = begin; i < lines.size(); ++i) {
        if (isIndented(lines[i]) != isExample) {
            isExample = !isExample;
            text += isExample ? ".EX\n" : ".EE\n";
        }
        text += literal(isExample ? lines[i].substr(2) : lines[i]) + "\n";
    }
    return text + (isExample ? ".EE\n" : "");
}

std::string paragraph(const Lines& lines) {
    return lines.empty() ? "" : ".PP\n" + linesFrom(lines, 0);
}

// Such as "Exit status:" with indented lines below it.
bool isSection(const Lines& lines) {
    return lines.size() > 1 && lines[0].ends_with(':') && isIndented(lines[1]);
}

std::string optionItem(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : namesOf(option)) {
        names += fmt::format("{}\\fB{}\\fR", names.empty() ? "" : ", ", literal(name));
    }
    const std::string value =
        takesValue(option) ? fmt::format(" \\fI{}\\fR", literal(option.get_type_name())) : "";
    return fmt::format(".TP\n{}{}\n{}.\n", names, value, literal(sentenceOn(option)));
}

std::string argumentItem(const CLI::Option& argument) {
    return fmt::format(".TP\n\\fI{}\\fR\n{}.\n", literal(argument.get_name(true, false)),
                       literal(sentenceOn(argument)));
}

std::string optionsSection(const CLI::App& app) {
    std::string text = ".SH OPTIONS\nThese go before or after the command.\n";
    for (const CLI::Option* const option : optionsOf(app)) {
        text += optionItem(*option);
    }
    return text;
}

std::string commandSection(const CLI::App& command) {
    std::string usage = fullNameOf(command);
    std::string items;
    for (const CLI::Option* const argument : argumentsOf(command)) {
        usage += " " + HelpFormatter().make_option_usage(argument);
        items += argumentItem(*argument);
    }
    for (const CLI::Option* const option : optionsOf(command)) {
        items += option == command.get_help_ptr() ? "" : optionItem(*option);
    }
    std::string text = fmt::format(".SS \"{}\"\n{}.\n{}", literal(usage),
                                   literal(command.get_description()), items);
    for (const Lines& lines : paragraphsOf(command.get_footer())) {
        text += paragraph(lines);
    }
    for (const CLI::App* const each : subcommandsOf(command)) {
        text += commandSection(*each);
    }
    return text;
}

} // namespace

std::string manPageOf(const CLI::App& app, const std::string& version) {
    std::string description = app.get_description() + ".\n";
    std::string sections;
    for (const Lines& lines : paragraphsOf(app.get_footer())) {
        if (isSection(lines)) {
            const std::string heading = lines[0].substr(0, lines[0].size() - 1);
            sections += ".SH " + upperCase(heading) + "\n" + linesFrom(lines, 1);
        } else {
            description += paragraph(lines);
        }
    }
    std::string commands;
    for (const CLI::App* const command : subcommandsOf(app)) {
        commands += commandSection(*command);
    }
    return fmt::format(
        ".TH {} 1 \"\" \"XPlaneOrvane {}\" \"User Commands\"\n"
        ".SH NAME\n{} \\- {}\n"
        ".SH SYNOPSIS\n"
        ".B {}\n.RI [ OPTION ...]\n.I COMMAND\n.RI [ ARGUMENT ...]\n"
        ".SH DESCRIPTION\n{}{}.SH COMMANDS\n{}{}",
        upperCase(app.get_name()), version, app.get_name(), literal(app.get_description()),
        app.get_name(), description, optionsSection(app), commands, sections);
}

} // namespace orvane::tool
