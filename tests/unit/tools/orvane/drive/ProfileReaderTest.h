#pragma once

#include <string>

#include "tools/orvane/drive/ProfileReader.h"

inline std::string problemsOf(const std::string& text) {
    orvane::tool::Problems problems;
    orvane::tool::readProfile(text, problems);
    return problemLines("p", problems);
}

inline std::string outputProblems(const std::string& lines) {
    return problemsOf("[[output]]\nname = \"a\"\n" + lines);
}

inline const std::string kFloat = "dataref = \"sim/x\"\ntype = \"float\"\n";
inline const std::string kInt = "dataref = \"sim/x\"\ntype = \"int\"\n";
inline const std::string kCommand = "command = \"sim/c\"\n";
