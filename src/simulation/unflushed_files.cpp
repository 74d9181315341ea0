#include "simulation/unflushed_files.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>

namespace qndr::simulation {
namespace {

namespace fs = std::filesystem;

UnflushedFiles* watching = nullptr;

} // namespace

UnflushedFiles::UnflushedFiles(std::string folder) : folder_(std::move(folder)), names_(Names()) {
    for (const auto& [name, identity] : names_) {
        contents_.insert(identity);
    }
    watching = this;
}

UnflushedFiles::~UnflushedFiles() {
    watching = nullptr;
}

std::map<std::string, UnflushedFiles::Identity> UnflushedFiles::Names() const {
    std::map<std::string, Identity> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
        struct stat facts {};
        stat(entry.path().c_str(), &facts);
        names[entry.path().filename().string()] = {facts.st_dev, facts.st_ino};
    }
    return names;
}

void UnflushedFiles::SeeFlush(int handle) {
    struct stat facts {};
    struct stat folder {};
    if (fstat(handle, &facts) != 0 || stat(folder_.c_str(), &folder) != 0) {
        return;
    }
    if (facts.st_dev == folder.st_dev && facts.st_ino == folder.st_ino) {
        names_ = Names();
    } else {
        contents_.emplace(facts.st_dev, facts.st_ino);
    }
}

std::set<std::string> UnflushedFiles::Lose() {
    std::set<std::string> lost;
    for (const auto& [name, identity] : Names()) {
        const auto kept = names_.find(name);
        if (kept == names_.end() || kept->second != identity) {
            fs::remove(fs::path(folder_) / name);
        } else if (!contents_.contains(identity)) {
            fs::resize_file(fs::path(folder_) / name, 0);
        } else {
            continue;
        }
        lost.insert(name);
    }
    return lost;
}

} // namespace qndr::simulation

/// Takes the place of the C library's.
extern "C" int fsync(int handle) {
    const int result = static_cast<int>(syscall(SYS_fsync, handle));
    if (result == 0 && qndr::simulation::watching != nullptr) {
        qndr::simulation::watching->SeeFlush(handle);
    }
    return result;
}
