#pragma once

#include <filesystem>
#include <string>
#include <vector>

// The lines that a shell command prints. Throws when it fails, or when the dissector has an error.
std::vector<std::string> runCommand(const std::string& command);

// The lines that tshark prints of a capture, with our dissector and without the user's settings.
// Throws when tshark fails or the dissector cannot be loaded.
std::vector<std::string> runTshark(const std::filesystem::path& capture,
                                   const std::vector<std::string>& arguments);

// The fields of the frames that pass the filter, one line per frame: `|` between fields and `,`
// between several values of one field.
std::vector<std::string> fieldsOf(const std::filesystem::path& capture,
                                  const std::vector<std::string>& fields,
                                  const std::string& filter = "orvane",
                                  std::vector<std::string> arguments = {});

// "Info" of each of them.
std::vector<std::string> infosOf(const std::filesystem::path& capture,
                                 const std::vector<std::string>& arguments = {});

// The dissector's expert information: frame number, severity ("Note", "Warning" or "Error") and
// text.
std::vector<std::string> expertsOf(const std::filesystem::path& capture,
                                   const std::string& filter = "orvane",
                                   std::vector<std::string> arguments = {});
