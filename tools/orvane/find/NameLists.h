#pragma once

#include <string>
#include <vector>

namespace orvane::tool {

// The simulator's own lists of its datarefs and commands. A path is empty if there is no such file.
struct ListFiles {
    std::string datarefs;
    std::string commands;

    bool IsEmpty() const { return datarefs.empty() && commands.empty(); }
};

// Of the newest simulator that the user has installed and that has one of them.
ListFiles installedLists();

struct ListedDataref {
    std::string name;
    std::string type; // "int", "float[8]", "double", "byte[40]"
    int elements = 0; // of an array
    bool isWritable = false;
    std::string units;
    std::string description;
};

struct ListedCommand {
    std::string name;
    std::string description;
};

struct NameLists {
    std::vector<ListedDataref> datarefs;
    std::vector<ListedCommand> commands;
    // "FILE:LINE: reason", for each line that cannot be read.
    std::vector<std::string> warnings;

    // std::runtime_error: a file cannot be read.
    static NameLists Read(const ListFiles& files);
};

} // namespace orvane::tool
