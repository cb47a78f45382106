#include "headless/host/ImportedFunction.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cstdint>
#include <cstring>

namespace headless {

namespace {

// The import tables of a loaded library, in memory.
class Imports final {
public:
    explicit Imports(const link_map& map) : bias(map.l_addr) {
        for (const Elf64_Dyn* entry = map.l_ld; entry->d_tag != DT_NULL; ++entry) {
            read(*entry);
        }
    }

    bool Redirect(const std::string& function, const void* target) const {
        const bool called = redirect(jumps, jumpBytes, function, target);
        const bool taken = redirect(others, otherBytes, function, target);
        return called || taken;
    }

private:
    void read(const Elf64_Dyn& entry) {
        if (entry.d_tag == DT_SYMTAB) {
            symbols = std::bit_cast<const Elf64_Sym*>(entry.d_un.d_ptr);
        } else if (entry.d_tag == DT_STRTAB) {
            strings = std::bit_cast<const char*>(entry.d_un.d_ptr);
        } else if (entry.d_tag == DT_JMPREL) {
            jumps = std::bit_cast<const Elf64_Rela*>(entry.d_un.d_ptr);
        } else if (entry.d_tag == DT_PLTRELSZ) {
            jumpBytes = entry.d_un.d_val;
        } else if (entry.d_tag == DT_RELA) {
            others = std::bit_cast<const Elf64_Rela*>(entry.d_un.d_ptr);
        } else if (entry.d_tag == DT_RELASZ) {
            otherBytes = entry.d_un.d_val;
        }
    }

    bool redirect(const Elf64_Rela* places, std::size_t bytes, const std::string& function,
                  const void* target) const {
        // A library without these tables imports nothing.
        if (places == nullptr || symbols == nullptr || strings == nullptr) {
            return false;
        }
        bool found = false;
        for (std::size_t i = 0; i < bytes / sizeof(Elf64_Rela); ++i) {
            const Elf64_Sym& symbol = symbols[ELF64_R_SYM(places[i].r_info)];
            if (function == strings + symbol.st_name) {
                write(bias + places[i].r_offset, target);
                found = true;
            }
        }
        return found;
    }

    // The loader may have made the page read-only.
    static void write(std::uintptr_t place, const void* target) {
        const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
        void* const begin = std::bit_cast<void*>(place / page * page);
        if (::mprotect(begin, page, PROT_READ | PROT_WRITE) == 0) {
            std::memcpy(std::bit_cast<void*>(place), &target, sizeof target);
        }
    }

    std::uintptr_t bias;
    const Elf64_Sym* symbols = nullptr;
    const char* strings = "";
    const Elf64_Rela* jumps = nullptr;
    std::size_t jumpBytes = 0;
    const Elf64_Rela* others = nullptr;
    std::size_t otherBytes = 0;
};

} // namespace

bool redirectImport(void* library, const std::string& function, const void* target) {
    link_map* map = nullptr;
    return ::dlinfo(library, RTLD_DI_LINKMAP, &map) == 0 &&
           Imports(*map).Redirect(function, target);
}

} // namespace headless
