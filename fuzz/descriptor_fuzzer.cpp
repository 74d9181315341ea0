// The descriptor of a sync file: any text is read, and what was read is written and read back alike.
#include "composition/computer_services.h"
#include "shared/agent_context.h"
#include "suite/computer/virtual_time.h"
#include "support.h"
#include "syncfiles/descriptor.h"

namespace qndr::fuzz {
namespace {

struct Bench {
    suite::Computer computer = suite::Computer::InFolder(Scratch().Path(), "MAINPC");
    suite::VirtualTime time{*ParseDate("2026-11-22 14:08:52")};
    ComputerServices outside{computer, {time, time, time}, "qndr5rwsync", {}};
    AgentContext context{outside.Services()};

    FoundSyncFile Read(const std::string& path) {
        FoundSyncFile entry;
        ReadIdFile(context, path, entry);
        return entry;
    }
    std::string Key(const std::string& path, const std::string& key) {
        return outside.Services().iniTools.GetValue("GENERAL", key, "", path);
    }
};

void CheckWritten(Bench& bench, const FoundSyncFile& entry) {
    const std::string folder = Scratch() / "written";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    SyncFileInfo info;
    info.IsMessage = entry.MessageCode != 0 ? FieldTrue : FieldFalse;
    info.MessageCode = entry.MessageCode;
    info.SyncState = entry.SyncState;
    info.Sequence = entry.Sequence;
    info.ResetDate = entry.ResetDate;
    info.IsSyncReset = entry.IsSyncReset;
    info.ReferenceCode = entry.ReferenceCode;
    Require(WriteIdFile(bench.context, folder, info), "a descriptor can be written");
    const FoundSyncFile again = bench.Read(folder + "/id.dat");
    Require(again.IsMessage == info.IsMessage && again.MessageCode == info.MessageCode, "a message stays one");
    Require(again.IsSyncReset == info.IsSyncReset && again.ReferenceCode == info.ReferenceCode,
            "what every kind of file carries reads back");
    if (info.IsMessage != FieldFalse) {
        return;
    }
    Require(again.SyncState == info.SyncState, "the state reads back");
    Require(again.Sequence == (info.SyncState == 0 ? info.Sequence : 0), "the sequence reads back");
    Require(info.Sequence != SyncResetSequence || again.ResetDate == info.ResetDate, "a reset's date reads back");
}

void CheckTexts(Bench& bench, const std::string& path, const FoundSyncFile& entry) {
    const std::string copy = Scratch() / "texts.dat";
    std::filesystem::remove(copy);
    const auto write = [&](const char* key, const std::string& value) {
        bench.outside.Services().iniTools.SetValue("GENERAL", key, value, copy);
    };
    write("From", entry.From);
    write("FromCompanyVersion", entry.FromCompanyVersion);
    write("FromAppVersion", entry.FromAppVersion);
    write("SentOn", bench.Key(path, "SentOn"));
    const FoundSyncFile again = bench.Read(copy);
    Require(again.From == entry.From && again.FromCompanyVersion == entry.FromCompanyVersion &&
                again.FromAppVersion == entry.FromAppVersion &&
                bench.Key(copy, "SentOn") == bench.Key(path, "SentOn"),
            "the sender's texts read back");
}

} // namespace
} // namespace qndr::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr;
    using namespace qndr::fuzz;
    static Bench bench;
    const std::string path = Scratch().Write("id.dat", AsText(data, size));
    const FoundSyncFile entry = bench.Read(path);
    Require(entry.MessageCode == 0 || entry.IsMessage == FieldTrue, "a code makes a message");
    CheckWritten(bench, entry);
    CheckTexts(bench, path, entry);
    return 0;
}
