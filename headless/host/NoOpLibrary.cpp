#include "headless/host/NoOpLibrary.h"

#include <dlfcn.h>
#include <elf.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

#include "headless/host/PluginError.h"

namespace headless {

namespace {

#if defined(__x86_64__)
constexpr Elf64_Half kMachine = EM_X86_64;
// xorps xmm0, xmm0; xor eax, eax; ret
constexpr unsigned char kCode[] = {0x0F, 0x57, 0xC0, 0x31, 0xC0, 0xC3};
#else
constexpr Elf64_Half kMachine = EM_AARCH64;
// fmov d0, xzr; mov x0, xzr; ret
constexpr unsigned char kCode[] = {0xE0, 0x03, 0x67, 0x9E, 0xE0, 0x03,
                                   0x1F, 0xAA, 0xC0, 0x03, 0x5F, 0xD6};
#endif

// The largest page size of the supported systems.
constexpr std::size_t kPage = 0x10000;

// The parts of the file after its headers, as offsets.
struct Layout {
    std::size_t symbols;
    std::size_t hash;
    std::size_t strings;
    std::size_t code;
    std::size_t textEnd;
    std::size_t dynamic;
    std::size_t end;
};

constexpr std::size_t kSegments = 4;
constexpr std::size_t kDynamicEntries = 7;

std::size_t aligned(std::size_t offset, std::size_t step) {
    return (offset + step - 1) / step * step;
}

template <class Structure>
void put(std::string& file, std::size_t offset, const Structure& structure) {
    std::memcpy(file.data() + offset, &structure, sizeof structure);
}

Layout layOut(std::size_t symbols, std::size_t stringBytes) {
    Layout layout{};
    layout.symbols = sizeof(Elf64_Ehdr) + kSegments * sizeof(Elf64_Phdr);
    layout.hash = layout.symbols + symbols * sizeof(Elf64_Sym);
    // One bucket: its head, then a link for each symbol.
    layout.strings = layout.hash + (3 + symbols) * sizeof(Elf64_Word);
    layout.code = aligned(layout.strings + stringBytes, 16);
    layout.textEnd = layout.code + sizeof kCode;
    layout.dynamic = aligned(layout.textEnd, kPage);
    layout.end = layout.dynamic + kDynamicEntries * sizeof(Elf64_Dyn);
    return layout;
}

Elf64_Phdr segment(Elf64_Word type, Elf64_Word flags, std::size_t begin, std::size_t end,
                   std::size_t alignment) {
    return {type, flags, begin, begin, begin, end - begin, end - begin, alignment};
}

void putHeaders(std::string& file, const Layout& layout) {
    Elf64_Ehdr header{};
    std::memcpy(header.e_ident, ELFMAG, SELFMAG);
    header.e_ident[EI_CLASS] = ELFCLASS64;
    header.e_ident[EI_DATA] = ELFDATA2LSB;
    header.e_ident[EI_VERSION] = EV_CURRENT;
    header.e_type = ET_DYN;
    header.e_machine = kMachine;
    header.e_version = EV_CURRENT;
    header.e_phoff = sizeof header;
    header.e_ehsize = sizeof header;
    header.e_phentsize = sizeof(Elf64_Phdr);
    header.e_phnum = kSegments;
    put(file, 0, header);
    const Elf64_Phdr segments[kSegments] = {
        segment(PT_LOAD, PF_R | PF_X, 0, layout.textEnd, kPage),
        segment(PT_LOAD, PF_R | PF_W, layout.dynamic, layout.end, kPage),
        segment(PT_DYNAMIC, PF_R | PF_W, layout.dynamic, layout.end, alignof(Elf64_Dyn)),
        segment(PT_GNU_STACK, PF_R | PF_W, 0, 0, 16)};
    put(file, sizeof header, segments);
}

void putDynamic(std::string& file, const Layout& layout, std::size_t stringBytes) {
    const auto entry = [](Elf64_Sxword tag, std::size_t value) {
        Elf64_Dyn made{};
        made.d_tag = tag;
        made.d_un.d_val = value;
        return made;
    };
    // The first string is the library's name.
    const Elf64_Dyn entries[kDynamicEntries] = {entry(DT_SONAME, 1),
                                                entry(DT_HASH, layout.hash),
                                                entry(DT_SYMTAB, layout.symbols),
                                                entry(DT_SYMENT, sizeof(Elf64_Sym)),
                                                entry(DT_STRTAB, layout.strings),
                                                entry(DT_STRSZ, stringBytes),
                                                entry(DT_NULL, 0)};
    put(file, layout.dynamic, entries);
}

std::string makeFile(const std::string& soname, const std::vector<std::string>& names) {
    std::string strings(1, '\0');
    strings += soname + '\0';
    std::vector<Elf64_Sym> symbols(1);
    for (const std::string& name : names) {
        Elf64_Sym symbol{};
        symbol.st_name = static_cast<Elf64_Word>(strings.size());
        symbol.st_info = ELF64_ST_INFO(STB_GLOBAL, STT_FUNC);
        symbol.st_shndx = 1; // Any section: defined.
        symbol.st_size = sizeof kCode;
        symbols.push_back(symbol);
        strings += name + '\0';
    }
    const Layout layout = layOut(symbols.size(), strings.size());
    std::string file(layout.end, '\0');
    putHeaders(file, layout);
    const auto count = static_cast<Elf64_Word>(symbols.size());
    const Elf64_Word hashHead[3] = {1, count, count > 1 ? 1U : 0U};
    put(file, layout.hash, hashHead);
    for (Elf64_Word i = 0; i < count; ++i) {
        symbols[i].st_value = i == 0 ? 0 : layout.code;
        put(file, layout.symbols + i * sizeof(Elf64_Sym), symbols[i]);
        const Elf64_Word next = i > 0 && i + 1 < count ? i + 1 : 0;
        put(file, layout.hash + (3 + i) * sizeof(Elf64_Word), next);
    }
    file.replace(layout.strings, strings.size(), strings);
    put(file, layout.code, kCode);
    putDynamic(file, layout, strings.size());
    return file;
}

// Returns a path that was not opened before. The loader identifies libraries by path, and the
// system reuses descriptors.
std::string pathOf(int descriptor) {
    static std::string prefix = "/proc/self/";
    prefix += "./";
    return prefix + "fd/" + std::to_string(descriptor);
}

} // namespace

void loadNoOpLibrary(const std::string& soname, const std::vector<std::string>& names) {
    const std::string file = makeFile(soname, names);
    const int descriptor = ::memfd_create(soname.c_str(), MFD_CLOEXEC);
    const bool written = descriptor >= 0 && ::write(descriptor, file.data(), file.size()) ==
                                                static_cast<ssize_t>(file.size());
    const std::string path = pathOf(descriptor);
    void* const library = written ? ::dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL) : nullptr;
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    if (library == nullptr) {
        const char* const reason = ::dlerror();
        throw PluginError(soname + ": no library can be made in memory: " +
                          (reason == nullptr ? "the system refuses" : reason));
    }
}

} // namespace headless
