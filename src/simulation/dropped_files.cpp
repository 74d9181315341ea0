#include "simulation/dropped_files.h"

#include "services/company_numbers.h"
#include "shared/agent_context.h"
#include "simulation/sync_folders.h"
#include "suite/files/zip_archive.h"
#include "syncfiles/descriptor.h"
#include "syncfiles/packaging.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace qndr::simulation {

namespace fs = std::filesystem;

bool DroppedFile::IsFullData() const {
    return descriptor.isReset || descriptor.state == SyncFileInitialSync;
}

DroppedFiles::DroppedFiles(const std::vector<SimulatedComputer*>& computers) {
    suite::VirtualTime& time = computers.front()->Time();
    outside_ = std::make_unique<ComputerServices>(computers.front()->Places(), TimeServices{time, time, time},
                                                  "judge", std::vector<std::string>{});
}

DroppedFiles::~DroppedFiles() = default;

const DroppedFile* DroppedFiles::Find(const std::string& name) const {
    const auto found = files_.find(SyncFolders::DroppedName(name));
    return found == files_.end() ? nullptr : &found->second;
}

Descriptor DroppedFiles::ReadDescriptor(const std::string& path) const {
    AgentContext context(outside_->Services());
    FoundSyncFile entry;
    entry.FilePath = path;
    ReadSyncFile(context, entry);
    return {entry.From, entry.SyncState, entry.Sequence, entry.IsSyncReset == FieldTrue};
}

std::optional<std::string> DroppedFiles::ReadData(const std::string& path) {
    const std::string folder = fs::path(path).parent_path().string() + "-judged";
    suite::LibZipArchive zip;
    if (zip.OpenZip(path) == 0) {
        return std::nullopt;
    }
    std::optional<std::string> content;
    fs::create_directory(folder);
    if (const auto entry = zip.GetEntryByName("data.xml"); entry == nullptr) {
        content = "";
    } else if (entry->Extract(folder) == 1) {
        std::ifstream file(folder + "/data.xml", std::ios::binary);
        content.emplace(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    fs::remove_all(folder);
    return content;
}

} // namespace qndr::simulation
