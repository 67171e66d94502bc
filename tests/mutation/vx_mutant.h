#pragma once

// Included in every source with mutants: selects the active one.

#include <fcntl.h>
#include <sys/mman.h>

#include <cstdlib>

/// VX_MUTANT is the number of the active mutant. VX_MUTANTS_SEEN names a file with a byte for each mutant,
/// which becomes 1 when the program reaches it.
struct VxMutants {
    static constexpr std::size_t kMost = 65536;

    VxMutants() {
        const char* const number = std::getenv("VX_MUTANT");
        chosen = number == nullptr ? 0 : std::atoi(number);
        const char* const path = std::getenv("VX_MUTANTS_SEEN");
        const int file = path == nullptr ? -1 : open(path, O_RDWR | O_CLOEXEC);
        void* const bytes =
            file < 0 ? MAP_FAILED : mmap(nullptr, kMost, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        seen = bytes == MAP_FAILED ? nullptr : static_cast<char*>(bytes);
    }

    int chosen = 0;
    char* seen = nullptr;
};

inline bool vxMutant(int id) {
    static const VxMutants mutants;
    if (mutants.seen != nullptr) {
        mutants.seen[id] = 1;
    }
    return id == mutants.chosen;
}
