// A sync file as it comes out of the Sync folder: any bytes are an archive with a descriptor, or are refused.
#include "composition/computer_services.h"
#include "shared/agent_context.h"
#include "shared/formatting.h"
#include "suite/computer/virtual_time.h"
#include "suite/files/zip_archive.h"
#include "support.h"
#include "syncfiles/packaging.h"

namespace qndr::fuzz {
namespace {

struct Bench {
    suite::Computer computer = suite::Computer::InFolder(Scratch().Path(), "MAINPC");
    suite::VirtualTime time{*ParseDate("2026-11-22 14:08:52")};
    ComputerServices outside{computer, {time, time, time}, "qndr5rwsync", {}};
    AgentContext context{outside.Services()};
    std::string archive = Scratch() / "MAIN~token~20261122T190852.zip";
    std::string extracted = Scratch() / "extracted";
};

std::string Fields(const FoundSyncFile& entry) {
    return FormatString("{0}|{1}|{2}|{3}|{4}|{5}|{6}|{7}|{8}|{9}", entry.IsMessage, entry.MessageCode, entry.From,
                        entry.FromCompanyVersion, entry.FromAppVersion, entry.SyncState, entry.Sequence,
                        entry.ResetDate, entry.IsSyncReset, entry.ReferenceCode);
}

/// Takes the entry out of the archive as the protocol does. True when it could be had; it is then in the folder.
bool Extract(Bench& bench, const std::string& name) {
    std::filesystem::remove_all(bench.extracted);
    std::filesystem::create_directory(bench.extracted);
    suite::LibZipArchive zip;
    if (zip.OpenZip(bench.archive) == 0) {
        Require(!zip.LastErrorText().empty(), "an archive that cannot be opened has a reason");
        Require(zip.GetEntryByName(name) == nullptr, "what is not open has no entries");
        return false;
    }
    const auto entry = zip.GetEntryByName(name);
    const bool extracted = entry != nullptr && entry->Extract(bench.extracted) == 1;
    Require(extracted || !zip.LastErrorText().empty(), "an entry that cannot be had has a reason");
    std::size_t files = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(bench.extracted)) {
        Require(file.is_regular_file() && file.path().filename() == name, "nothing but the entry is written");
        ++files;
    }
    Require(files == (extracted ? 1U : 0U), "a failure leaves no file");
    return extracted;
}

} // namespace
} // namespace qndr::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr;
    using namespace qndr::fuzz;
    static Bench bench;
    std::filesystem::remove(bench.archive);
    Scratch().Write(std::filesystem::path(bench.archive).filename(), AsText(data, size));

    FoundSyncFile read;
    read.FilePath = bench.archive;
    ReadSyncFile(bench.context, read);
    Require(!std::filesystem::exists(bench.computer.temporaryFolder) ||
                std::filesystem::is_empty(bench.computer.temporaryFolder),
            "reading leaves nothing in the temporary folder");

    FoundSyncFile expected;
    if (Extract(bench, "id.dat")) {
        ReadIdFile(bench.context, bench.extracted + "/id.dat", expected);
    }
    Require(Fields(read) == Fields(expected), "the fields are those of the descriptor in the archive");
    Extract(bench, "data.xml");
    return 0;
}
