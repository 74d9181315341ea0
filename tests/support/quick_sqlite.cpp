#include <sqlite3.h>

#include <cstddef>
#include <cstring>

// SQLite is not instrumented, and its many small allocations, each noted by the sanitizer, make these tests
// several times slower. They go straight to the C library here; the tests of the suite's own room keep the
// sanitizer's view. Besides, a database that a test keeps open is not read anew by each agent that opens it.

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);
}

namespace {

constexpr int HeaderSize = 16; ///< in front of each piece, for its size

void* WithSize(void* piece, int size) {
    if (piece == nullptr) {
        return nullptr;
    }
    std::memcpy(piece, &size, sizeof size);
    return static_cast<char*>(piece) + HeaderSize;
}
void* PieceOf(void* memory) {
    return static_cast<char*>(memory) - HeaderSize;
}

void* Allocate(int size) {
    return WithSize(__libc_malloc(static_cast<std::size_t>(size) + HeaderSize), size);
}
void Free(void* memory) {
    if (memory != nullptr) {
        __libc_free(PieceOf(memory));
    }
}
void* Reallocate(void* memory, int size) {
    return WithSize(__libc_realloc(PieceOf(memory), static_cast<std::size_t>(size) + HeaderSize), size);
}
int SizeOf(void* memory) {
    int size = 0;
    if (memory != nullptr) {
        std::memcpy(&size, PieceOf(memory), sizeof size);
    }
    return size;
}
int RoundUp(int size) {
    return (size + 7) & ~7;
}
int Start(void*) {
    return SQLITE_OK;
}
void End(void*) {
}

const sqlite3_mem_methods Methods{Allocate, Free, Reallocate, SizeOf, RoundUp, Start, End, nullptr};
// Counting the memory would take a lock for every piece.
const int Configured = sqlite3_config(SQLITE_CONFIG_MALLOC, &Methods) +
                       sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) + sqlite3_enable_shared_cache(1);

} // namespace
