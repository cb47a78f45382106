#pragma once

#include <filesystem>
#include <string>
#include <vector>

// Text from a file or a program, and its lines. Throws std::runtime_error on failure.

std::string contentOf(const std::filesystem::path& file);
// The standard output of a shell's command, which must end with status 0.
std::string outputOf(const std::string& command);
// Without line ends.
std::vector<std::string> linesOf(const std::string& text);
