#include "suite/computer/operating_system.h"

#include "services/failure.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <pwd.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace qndr::suite {
namespace {

/// An absolute path without separators at its end, or nothing: a relative one would move with the working folder.
std::string AbsoluteFolder(const char* variable) {
    const char* value = std::getenv(variable);
    std::string path = value == nullptr ? "" : value;
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path.starts_with('/') ? path : "";
}

std::string HomeFolder() {
    std::string home = AbsoluteFolder("HOME");
    if (home.empty()) {
        const passwd* user = getpwuid(geteuid());
        home = user == nullptr || user->pw_dir == nullptr ? "" : user->pw_dir;
    }
    if (!home.starts_with('/')) {
        throw services::Failure("the home folder of this user is not known");
    }
    return home;
}

std::string XdgFolder(const char* variable, const char* belowHome) {
    const std::string folder = AbsoluteFolder(variable);
    return folder.empty() ? HomeFolder() + belowHome : folder;
}

} // namespace

std::string HostName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string UserName() {
    const passwd* user = getpwuid(geteuid());
    return user == nullptr ? "user " + std::to_string(geteuid()) : user->pw_name;
}

void ReturnLargeBlocks() {
#ifdef __GLIBC__
    constexpr int largeBytes = 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, largeBytes); // which otherwise grows with the blocks that are given back
#endif
}

void ReturnUnusedMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

void KeepNewFilesPrivate() {
    umask(S_IRWXG | S_IRWXO);
}

Computer UsualPlaces(const std::string& name) {
    const std::string settings = XdgFolder("XDG_CONFIG_HOME", "/.config");
    const std::string data = XdgFolder("XDG_DATA_HOME", "/.local/share");
    std::string temporary = AbsoluteFolder("TMPDIR");
    if (temporary.empty()) {
        temporary = "/tmp";
    }
    std::vector<std::string> others{data + "/Velmoran/Temp"};
    const std::string runtime = AbsoluteFolder("XDG_RUNTIME_DIR");
    if (!runtime.empty()) {
        others.insert(others.begin(), runtime + "/qndr5");
    }
    return {name,
            settings + "/velmoran/ordergrove-5.0/registry.db",
            data,
            data + "/Velmoran/Ordergrove Suite",
            temporary + "/qndr5-" + std::to_string(geteuid()),
            std::move(others)};
}

std::string RunningProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::vector<std::string> RunningProcessNames() {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; entry != end && !error;
         entry.increment(error)) {
        std::ifstream file(entry->path() / "comm");
        std::string name;
        if (std::getline(file, name)) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

std::uint64_t UnixMilliseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

std::uint64_t RandomBits() {
    std::uint64_t bits = 0;
    ssize_t got = 0;
    do {
        got = getrandom(&bits, sizeof bits, 0);
    } while (got < 0 && errno == EINTR);
    if (got != static_cast<ssize_t>(sizeof bits)) {
        throw services::Failure("the system gives no random numbers");
    }
    return bits;
}

std::string RandomToken() {
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(RandomBits()));
    return text.data();
}

} // namespace qndr::suite
