// Loaded into a program before the C library: lets it get no memory, or no thread, when its turn has come.
// VX_REFUSE names the call, malloc or pthread_create, VX_REFUSE_NTH which one (from 1 on), VX_REFUSE_ON is
// there when all later ones fail too. Only vxclone itself is treated so, not what is started for it. With
// VX_REFUSE_COUNT, a file, the number of calls is written there at the program's end. A program that crashes
// says in which of its parts.

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

enum class Refused { Nothing, Memory, Thread };

struct Plan {
    Refused refused = Refused::Nothing;
    unsigned long nth = 0;
    bool fromThenOn = false;
};

// No call may allocate memory here, because this code implements the allocation.
constinit Plan plan;
constinit std::atomic<unsigned long> calls = 0;

bool isTurn(Refused call) {
    if (plan.refused != call) {
        return false;
    }
    const unsigned long number = ++calls;
    return plan.nth != 0 && (number == plan.nth || (plan.fromThenOn && number > plan.nth));
}

/// This function, the system's way back from a handler, and where it happened.
constexpr int kFramesToCrash = 3;

void sayWhere(int signal) {
    std::array<void*, kFramesToCrash> frames{};
    const int depth = backtrace(frames.data(), kFramesToCrash);
    Dl_info part{};
    const bool known = depth == kFramesToCrash && dladdr(frames.back(), &part) != 0;
    dprintf(STDERR_FILENO, "crashed in %s\n", known ? part.dli_fname : "an unknown place");
    std::signal(signal, SIG_DFL);
    raise(signal);
}

__attribute__((constructor)) void readPlan() {
    const char* const call = getenv("VX_REFUSE");
    if (call == nullptr || strcmp(program_invocation_short_name, "vxclone") != 0) {
        return;
    }
    const char* const nth = getenv("VX_REFUSE_NTH");
    plan.nth = nth == nullptr ? 0 : strtoul(nth, nullptr, 10);
    plan.fromThenOn = getenv("VX_REFUSE_ON") != nullptr;
    // The first backtrace loads a library, for which there will be no memory later.
    void* frame = nullptr;
    backtrace(&frame, 1);
    std::signal(SIGSEGV, sayWhere);
    plan.refused = strcmp(call, "malloc") == 0 ? Refused::Memory : Refused::Thread;
}

__attribute__((destructor)) void writeCount() {
    const char* const name = getenv("VX_REFUSE_COUNT");
    if (name == nullptr || plan.refused == Refused::Nothing) {
        return;
    }
    std::array<char, 32> text{};
    const int size = snprintf(text.data(), text.size(), "%lu", calls.load());
    const int file = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0 || write(file, text.data(), static_cast<size_t>(size)) != size) {
        abort();
    }
    close(file);
}

#ifdef VX_COVERAGE
/// The code that writes coverage counters at the program's end crashes without memory, so it always gets
/// memory.
void spareTheCounters() {
    static constinit std::atomic<bool> isSpared = false;
    if (!isSpared.exchange(true)) {
        const Refused refused = plan.refused;
        plan.refused = Refused::Nothing;
        if (atexit([] { plan.refused = Refused::Nothing; }) != 0) {
            abort();
        }
        plan.refused = refused;
    }
}
#endif

void* noMemory() {
#ifdef VX_COVERAGE
    spareTheCounters();
#endif
    errno = ENOMEM;
    return nullptr;
}

}  // namespace

extern "C" {

// The C library's own functions, which need no search by name.
void* __libc_malloc(size_t size) noexcept;
void* __libc_calloc(size_t count, size_t size) noexcept;
void* __libc_realloc(void* old, size_t size) noexcept;

void* malloc(size_t size) noexcept {
    return isTurn(Refused::Memory) ? noMemory() : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) noexcept {
    return isTurn(Refused::Memory) ? noMemory() : __libc_calloc(count, size);
}

void* realloc(void* old, size_t size) noexcept {
    return isTurn(Refused::Memory) ? noMemory() : __libc_realloc(old, size);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*begin)(void*),
                   void* argument) noexcept {
    using Call = int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    if (isTurn(Refused::Thread)) {
        return EAGAIN;
    }
    return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, "pthread_create"))(thread, attributes, begin, argument);
}
}
