#include <execinfo.h>
#include <link.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "support/heap.h"

namespace VelmoraQuavin::testing {
namespace {

constexpr int kDeepest = 24;

// The address range of a module's code.
struct Code {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;

    bool holds(const void* address) const noexcept {
        const auto place = reinterpret_cast<std::uintptr_t>(address);
        return begin <= place && place < end;
    }
};

struct Modules {
    Code program;
    Code standardLibrary;
};

Code codeOf(const dl_phdr_info& module) noexcept {
    for (ElfW(Half) i = 0; i < module.dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = module.dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
            const std::uintptr_t begin = module.dlpi_addr + segment.p_vaddr;
            return {begin, begin + segment.p_memsz};
        }
    }
    return {};
}

// The program itself has an empty name here.
int findModules(dl_phdr_info* module, std::size_t /*size*/, void* modules) noexcept {
    auto& found = *static_cast<Modules*>(modules);
    if (*module->dlpi_name == '\0' && found.program.end == 0) {
        found.program = codeOf(*module);
    } else if (std::strstr(module->dlpi_name, "libstdc++.so") != nullptr) {
        found.standardLibrary = codeOf(*module);
    }
    return 0;
}

const Modules& modules() noexcept {
    static const Modules found = [] {
        Modules modules;
        dl_iterate_phdr(&findModules, &modules);
        return modules;
    }();
    return found;
}

bool isOfTheStandardLibrary(const void* code) noexcept {
    return modules().standardLibrary.holds(code);
}

// The caller on whose behalf the standard library allocates: for strings, for example, its own
// compiled code calls the operators.
const void* callerOfTheStandardLibrary() noexcept {
    std::array<void*, kDeepest> frames{};
    void** const end = frames.data() + backtrace(frames.data(), kDeepest);
    void** const library = std::find_if(frames.data(), end, isOfTheStandardLibrary);
    void** const caller = std::find_if_not(library, end, isOfTheStandardLibrary);
    return caller == end ? nullptr : *caller;
}

}  // namespace

std::size_t sizeOfBlock(void* block) noexcept {
    return malloc_usable_size(block);
}

void* allocateAligned(std::size_t alignment, std::size_t size) noexcept {
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

std::size_t sizeOfAligned(void* block, std::size_t /*alignment*/) noexcept {
    return malloc_usable_size(block);
}

void freeAligned(void* block) noexcept {
    std::free(block);
}

bool isOfThisProgram(const void* code) noexcept {
    return modules().program.holds(isOfTheStandardLibrary(code) ? callerOfTheStandardLibrary()
                                                                : code);
}

}  // namespace VelmoraQuavin::testing
