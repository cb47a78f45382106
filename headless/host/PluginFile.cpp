#include "headless/host/PluginFile.h"

#include <elf.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>

#include "headless/host/PluginError.h"

namespace headless {

namespace {

#if defined(__x86_64__)
constexpr Elf64_Half kMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr Elf64_Half kMachine = EM_AARCH64;
#else
#error "unknown kind of computer"
#endif

// Reads a structure at an offset; empty if it does not fit into the file.
template <class Structure>
std::optional<Structure> readAt(std::string_view bytes, std::size_t offset) {
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Structure)) {
        return std::nullopt;
    }
    Structure structure;
    std::memcpy(&structure, bytes.data() + offset, sizeof structure);
    return structure;
}

// The zero-terminated text at an offset.
std::string textAt(std::string_view strings, std::size_t offset) {
    if (offset >= strings.size()) {
        return {};
    }
    const std::string_view rest = strings.substr(offset);
    return std::string(rest.substr(0, rest.find('\0')));
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    if (!file || std::filesystem::is_directory(path)) {
        throw PluginError(path + ": the plugin cannot be read");
    }
    return content.str();
}

std::vector<std::string> librariesInRunPath(const PluginFile& file) {
    std::vector<std::string> paths;
    for (const std::string& folder : file.RunPath()) {
        for (const std::string& name : file.Needed()) {
            const std::string path = std::filesystem::path(folder) / name;
            if (std::filesystem::is_regular_file(path)) {
                paths.push_back(path);
            }
        }
    }
    return paths;
}

// The loader passes over libraries for other computers, too.
void addIfUsable(std::vector<PluginFile>& files, const std::string& path) {
    try {
        files.emplace_back(path);
    } catch (const PluginError&) {
        return;
    }
}

} // namespace

PluginFile::PluginFile(const std::string& pluginPath)
    : path(pluginPath), content(readFile(pluginPath)) {
    requireUsable();
    requireWhole();
    readDynamicSections();
}

void PluginFile::requireUsable() const {
    const auto header = readAt<Elf64_Ehdr>(content, 0);
    if (!header.has_value() || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0) {
        throw PluginError(path + ": not a plugin for Linux: it is not a shared library (ELF)");
    }
    if (header->e_ident[EI_CLASS] != ELFCLASS64 || header->e_machine != kMachine) {
        throw PluginError(path + ": the plugin is built for another kind of computer (" +
                          (header->e_ident[EI_CLASS] == ELFCLASS64 ? "64" : "32") +
                          " bits, machine " + std::to_string(header->e_machine) +
                          "); this one needs 64 bits, machine " + std::to_string(kMachine));
    }
    if (header->e_type != ET_DYN) {
        throw PluginError(path + ": not a plugin: it is not a shared library");
    }
}

void PluginFile::requireWhole() const {
    const auto header = readAt<Elf64_Ehdr>(content, 0);
    for (std::size_t i = 0; i < header->e_phnum; ++i) {
        const auto segment = readAt<Elf64_Phdr>(content, header->e_phoff + i * sizeof(Elf64_Phdr));
        const bool isLoaded = segment.has_value() && segment->p_type == PT_LOAD;
        if (!segment.has_value() ||
            (isLoaded && (segment->p_offset > content.size() ||
                          segment->p_filesz > content.size() - segment->p_offset))) {
            throw PluginError(path + ": the plugin's file is cut short, at " +
                              std::to_string(content.size()) + " bytes");
        }
    }
}

void PluginFile::readDynamicSections() {
    const auto header = readAt<Elf64_Ehdr>(content, 0);
    for (std::size_t i = 0; i < header->e_shnum; ++i) {
        const auto one = readAt<Elf64_Shdr>(content, header->e_shoff + i * sizeof(Elf64_Shdr));
        if (!one.has_value()) {
            return;
        }
        if (one->sh_type == SHT_DYNSYM) {
            readSymbols(section(i), section(one->sh_link), sectionOfType(SHT_GNU_versym));
        } else if (one->sh_type == SHT_DYNAMIC) {
            readEntries(section(i), section(one->sh_link));
        }
    }
}

void PluginFile::readSymbols(std::string_view symbols, std::string_view strings,
                             std::string_view versions) {
    for (std::size_t i = 0;; ++i) {
        const auto symbol = readAt<Elf64_Sym>(symbols, i * sizeof(Elf64_Sym));
        if (!symbol.has_value()) {
            return;
        }
        const std::string name = textAt(strings, symbol->st_name);
        const auto version = readAt<Elf64_Versym>(versions, i * sizeof(Elf64_Versym));
        if (symbol->st_shndx == SHN_UNDEF && ELF64_ST_BIND(symbol->st_info) == STB_GLOBAL &&
            version.value_or(VER_NDX_GLOBAL) <= VER_NDX_GLOBAL && !name.empty()) {
            undefined.push_back(name);
        }
    }
}

void PluginFile::readEntries(std::string_view entries, std::string_view strings) {
    for (std::size_t offset = 0;; offset += sizeof(Elf64_Dyn)) {
        const auto entry = readAt<Elf64_Dyn>(entries, offset);
        if (!entry.has_value() || entry->d_tag == DT_NULL) {
            return;
        }
        if (entry->d_tag == DT_NEEDED) {
            needed.push_back(textAt(strings, entry->d_un.d_val));
        } else if (entry->d_tag == DT_RUNPATH || entry->d_tag == DT_RPATH) {
            addRunPath(textAt(strings, entry->d_un.d_val));
        }
    }
}

void PluginFile::addRunPath(const std::string& folders) {
    const std::string origin = std::filesystem::absolute(path).parent_path().string();
    std::istringstream list(folders);
    for (std::string folder; std::getline(list, folder, ':');) {
        for (const std::string word : {"${ORIGIN}", "$ORIGIN"}) {
            if (const std::size_t place = folder.find(word); place != std::string::npos) {
                folder.replace(place, word.size(), origin);
            }
        }
        runPath.push_back(folder);
    }
}

std::string_view PluginFile::sectionOfType(std::uint32_t type) const {
    const auto header = readAt<Elf64_Ehdr>(content, 0);
    for (std::size_t i = 0; i < header->e_shnum; ++i) {
        const auto one = readAt<Elf64_Shdr>(content, header->e_shoff + i * sizeof(Elf64_Shdr));
        if (one.has_value() && one->sh_type == type) {
            return section(i);
        }
    }
    return {};
}

std::string_view PluginFile::section(std::size_t index) const {
    const auto header = readAt<Elf64_Ehdr>(content, 0);
    const auto found = readAt<Elf64_Shdr>(content, header->e_shoff + index * sizeof(Elf64_Shdr));
    if (index >= header->e_shnum || !found.has_value() || found->sh_offset > content.size()) {
        return {};
    }
    return std::string_view(content).substr(found->sh_offset, found->sh_size);
}

std::vector<PluginFile> withOwnLibraries(const PluginFile& plugin) {
    std::vector<PluginFile> files{plugin};
    std::set<std::string> seen;
    for (std::size_t i = 0; i < files.size(); ++i) {
        for (const std::string& path : librariesInRunPath(files[i])) {
            // One library may be found by many paths.
            if (seen.insert(std::filesystem::canonical(path)).second) {
                addIfUsable(files, path);
            }
        }
    }
    return files;
}

} // namespace headless
