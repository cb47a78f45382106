#pragma once

#include <filesystem>
#include <string>
#include <vector>

// The lines that a shell command prints. Throws when it fails, or when the dissector has an error.
std::vector<std::string> runCommand(const std::string& command);

// What tshark, with our dissector and without settings of a user, prints of a capture: its lines.
// Throws when tshark fails or the dissector cannot be loaded.
std::vector<std::string> runTshark(const std::filesystem::path& capture,
                                   const std::vector<std::string>& arguments);

// The same, of the frames that pass the filter: one line a frame with the fields' values, `|`
// between fields and `,` between several values of one.
std::vector<std::string> fieldsOf(const std::filesystem::path& capture,
                                  const std::vector<std::string>& fields,
                                  const std::string& filter = "orvane",
                                  std::vector<std::string> arguments = {});

// "Info" of each of them.
std::vector<std::string> infosOf(const std::filesystem::path& capture,
                                 const std::vector<std::string>& arguments = {});

// The texts of all expert information of the dissector's, with the frame's number in front and the
// severity: "Note", "Warning" or "Error".
std::vector<std::string> expertsOf(const std::filesystem::path& capture,
                                   const std::string& filter = "orvane",
                                   std::vector<std::string> arguments = {});
