#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

// The program as a process of its own, in a folder of its own.
class HeadlessSimRun : public ::testing::Test {
protected:
    // Returns the exit status, or minus the signal. What it wrote is in `output` and `errors`.
    int run(const std::string& arguments, const std::string& input = "") {
        folder.Write("input", input);
        const std::string command = "cd " + folder.Path("") + " && { " HEADLESS_SIM " " +
                                    arguments + "; } < input > output 2> errors";
        // The shell's own exit status for a signal is 128 + the signal.
        const int status = std::system(command.c_str());
        output = folder.Read("output");
        errors = folder.Read("errors");
        const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return code > 128 ? 128 - code : code;
    }

    std::string log() const { return folder.Read("Log.txt"); }

    TemporaryDirectory folder;
    std::string output;
    std::string errors;
};
