#include "simulation/database_disk.h"

#include <sqlite3.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <memory>

namespace qndr::simulation {
namespace {

struct Room {
    std::int64_t bytes = DatabaseDisk::Endless;
    std::int64_t refusals = 0;
};

std::map<std::string, Room>& Rooms() {
    static std::map<std::string, Room> rooms;
    return rooms;
}

/// What SQLite takes for an open file; the system's own lies behind it in the same memory.
struct File {
    sqlite3_file base;
    Room* room; ///< null where there is no end of it
    sqlite3_file* Own() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

File& Of(sqlite3_file* file) {
    return *reinterpret_cast<File*>(file);
}
sqlite3_file* Own(sqlite3_file* file) {
    return Of(file).Own();
}

int Write(sqlite3_file* file, const void* data, int amount, sqlite3_int64 offset) {
    if (Room* const room = Of(file).room; room != nullptr && room->bytes != DatabaseDisk::Endless) {
        sqlite3_int64 size = 0;
        if (const int result = Own(file)->pMethods->xFileSize(Own(file), &size); result != SQLITE_OK) {
            return result;
        }
        if (const sqlite3_int64 growth = offset + amount - size; growth > 0) {
            if (growth > room->bytes) {
                ++room->refusals;
                return SQLITE_FULL;
            }
            room->bytes -= growth;
        }
    }
    return Own(file)->pMethods->xWrite(Own(file), data, amount, offset);
}

/// All but writing is left to the system's own file.
const sqlite3_io_methods Methods{
    3,
    [](sqlite3_file* file) { return Own(file)->pMethods->xClose(Own(file)); },
    [](sqlite3_file* file, void* data, int amount, sqlite3_int64 offset) {
        return Own(file)->pMethods->xRead(Own(file), data, amount, offset);
    },
    Write,
    [](sqlite3_file* file, sqlite3_int64 size) { return Own(file)->pMethods->xTruncate(Own(file), size); },
    [](sqlite3_file* file, int flags) { return Own(file)->pMethods->xSync(Own(file), flags); },
    [](sqlite3_file* file, sqlite3_int64* size) { return Own(file)->pMethods->xFileSize(Own(file), size); },
    [](sqlite3_file* file, int level) { return Own(file)->pMethods->xLock(Own(file), level); },
    [](sqlite3_file* file, int level) { return Own(file)->pMethods->xUnlock(Own(file), level); },
    [](sqlite3_file* file, int* reserved) { return Own(file)->pMethods->xCheckReservedLock(Own(file), reserved); },
    [](sqlite3_file* file, int request, void* value) {
        return Own(file)->pMethods->xFileControl(Own(file), request, value);
    },
    [](sqlite3_file* file) { return Own(file)->pMethods->xSectorSize(Own(file)); },
    [](sqlite3_file* file) { return Own(file)->pMethods->xDeviceCharacteristics(Own(file)); },
    [](sqlite3_file* file, int region, int size, int extend, void volatile** memory) {
        return Own(file)->pMethods->xShmMap(Own(file), region, size, extend, memory);
    },
    [](sqlite3_file* file, int offset, int count, int flags) {
        return Own(file)->pMethods->xShmLock(Own(file), offset, count, flags);
    },
    [](sqlite3_file* file) { Own(file)->pMethods->xShmBarrier(Own(file)); },
    [](sqlite3_file* file, int remove) { return Own(file)->pMethods->xShmUnmap(Own(file), remove); },
    [](sqlite3_file* file, sqlite3_int64 offset, int amount, void** memory) {
        return Own(file)->pMethods->xFetch(Own(file), offset, amount, memory);
    },
    [](sqlite3_file* file, sqlite3_int64 offset, void* memory) {
        return Own(file)->pMethods->xUnfetch(Own(file), offset, memory);
    },
};

Room* RoomOf(const char* path) {
    if (path == nullptr) {
        return nullptr; // a temporary file without a name
    }
    const auto found = Rooms().find(std::filesystem::path(path).parent_path().string());
    return found == Rooms().end() ? nullptr : &found->second;
}

int Open(sqlite3_vfs* disk, const char* path, sqlite3_file* file, int flags, int* gotFlags) {
    auto* const system = static_cast<sqlite3_vfs*>(disk->pAppData);
    Of(file).room = RoomOf(path);
    const int result = system->xOpen(system, path, Own(file), flags, gotFlags);
    file->pMethods = Own(file)->pMethods == nullptr ? nullptr : &Methods;
    return result;
}

void Install() {
    static const std::unique_ptr<sqlite3_vfs> disk = [] {
        sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
        auto made = std::make_unique<sqlite3_vfs>(*system);
        made->zName = "qndr5-simulated";
        made->pNext = nullptr;
        made->pAppData = system;
        made->szOsFile = static_cast<int>(sizeof(File)) + system->szOsFile;
        made->xOpen = Open;
        sqlite3_vfs_register(made.get(), 1);
        return made;
    }();
}

} // namespace

void DatabaseDisk::SetRoom(const std::string& folder, std::int64_t bytes) {
    Install();
    Rooms()[folder].bytes = bytes;
}

std::int64_t DatabaseDisk::Refusals(const std::string& folder) {
    return Rooms()[folder].refusals;
}

} // namespace qndr::simulation
