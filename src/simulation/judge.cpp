#include "simulation/judge.h"

#include "shared/text.h"
#include "suite/files/zip_archive.h"
#include "syncfiles/packaging.h"
#include "syncfiles/sync_state.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace qndr::simulation {
namespace {

namespace fs = std::filesystem;

/// No write of a descriptor is examined, and a number or an identity that cannot be read is 0 or empty. An entry
/// that cannot be added is passed over.
const std::set<std::string> BuildingAFile{"IniTools.SetValue", "PathTools.FixPath", "Database.ExecuteScaler",
                                          "Engine.AddToExport", "Database.ExecuteRead"};

/// Empty when there is no such entry.
std::string ReadEntry(const std::string& archive, const std::string& name) {
    const std::string folder = fs::path(archive).parent_path().string() + "-judged";
    suite::LibZipArchive zip;
    std::string content;
    fs::create_directory(folder);
    if (zip.OpenZip(archive) != 0) {
        if (const auto entry = zip.GetEntryByName(name); entry != nullptr && entry->Extract(folder) == 1) {
            std::ifstream file(folder + "/" + name, std::ios::binary);
            content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        }
    }
    fs::remove_all(folder);
    return content;
}

} // namespace

Judge::Judge(std::vector<SimulatedComputer*> computers, const SyncFolders& folders, Chronicle& chronicle)
    : computers_(std::move(computers)), folders_(folders), chronicle_(chronicle) {
    for (std::size_t computer = 0; computer < computers_.size(); ++computer) {
        suite::VirtualTime& time = computers_[computer]->Time();
        outside_.push_back(std::make_unique<ComputerServices>(
            computers_[computer]->Places(), TimeServices{time, time, time}, "judge", std::vector<std::string>{}));
        known_.push_back(Read(computer));
        if (computer > 0) {
            pairings_[computer] = {};
        }
    }
}

Judge::~Judge() = default;

Judge::Ends Judge::Read(std::size_t computer) const {
    const suite::SqliteConnection& company = computers_[computer]->Company();
    Ends ends;
    if (computers_[computer]->IsMain()) {
        suite::SqliteStatement rows =
            company.Prepare("SELECT UniqueID, SyncState, LastAuditID, NextSequenceToRoaming, "
                            "NextSequenceFromRoaming FROM RoamingWorkstations");
        while (rows.Step()) {
            const std::string id(rows.Text(0));
            for (std::size_t other = 1; other < computers_.size(); ++other) {
                if (computers_[other]->UniqueID() == id) {
                    ends[other] = {rows.Integer(1), rows.Integer(2), rows.Integer(3), rows.Integer(4)};
                }
            }
        }
    } else {
        suite::SqliteStatement row = company.Prepare(
            "SELECT SyncState, LastAuditID, NextSequenceToMain, NextSequenceFromMain FROM Company");
        row.Step();
        ends[computer] = {row.Integer(0), row.Integer(1), row.Integer(2), row.Integer(3)};
    }
    return ends;
}

void Judge::Accuse(const std::string& what) const {
    throw Violation{computers_[computer_]->Name() + ": " + what};
}

void Judge::Explain(std::size_t workstation, const char* name) {
    if (pairings_[workstation].losses.insert(name).second) {
        chronicle_.NoteLoss(name);
        chronicle_.Note(computers_[workstation]->Name(), std::string("may be out of step from now on: ") + name);
    }
}

void Judge::ExplainAll(const char* name) {
    for (const auto& [workstation, pairing] : pairings_) {
        if (computers_[computer_]->IsMain() || workstation == computer_) {
            Explain(workstation, name);
        }
    }
}

void Judge::BeginPass(std::size_t computer, const FaultGate& gate) {
    computer_ = computer;
    gate_ = &gate;
    present_ = folders_.Names(computer);
    temporaryFiles_ = computers_[computer]->TemporaryFiles();
    editedInPass_ = false;
    initialSyncs_.clear();
    NoteOldFiles();
}

void Judge::AfterCall(std::string_view call) {
    if (call != "Database.ExecuteNonQuery" && call != "Engine.ImportFile") {
        return;
    }
    const Ends now = Read(computer_);
    for (const auto& [workstation, end] : now) {
        if (const End before = known_[computer_][workstation]; before != end) {
            known_[computer_][workstation] = end;
            Compare(workstation, before, end);
        }
    }
}

void Judge::Compare(std::size_t workstation, const End& before, const End& now) {
    CompareStates(workstation, before.state, now.state);
    const bool isMain = computers_[computer_]->IsMain();
    const bool restarts = isMain
                              ? now.state == SyncStateResetPending
                              : now.state == SyncStateResetPending || now.state == SyncStateInitialSyncRequested;
    const auto moved = [&](std::int64_t from, std::int64_t to) {
        return to == from || to == from + 1 || (to == 0 && restarts && before.state != now.state) ||
               (to == 0 && restarts && isMain);
    };
    if (!moved(before.nextOut, now.nextOut) || !moved(before.nextIn, now.nextIn)) {
        Accuse("a sequence of " + computers_[workstation]->Name() + " went from " +
               std::to_string(before.nextOut) + "/" + std::to_string(before.nextIn) + " to " +
               std::to_string(now.nextOut) + "/" + std::to_string(now.nextIn));
    }
    // A reset's data comes into an emptied log.
    const bool logMayBeEmpty = now.state == SyncStateInitialSyncRequested || before.state == SyncStateResetPending;
    if (now.lastAudit < before.lastAudit && (isMain || !logMayBeEmpty)) {
        Accuse("LastAuditID of " + computers_[workstation]->Name() + " went back from " +
               std::to_string(before.lastAudit) + " to " + std::to_string(now.lastAudit));
    }
    if (before.nextIn == 0 && now.nextIn == 1) {
        NoteTakenAsFirst(workstation);
    }
    DemandFile(workstation, before, now);
}

void Judge::CompareStates(std::size_t workstation, std::int64_t before, std::int64_t now) {
    if (before == now) {
        return;
    }
    const bool isMain = computers_[computer_]->IsMain();
    const std::set<std::pair<std::int64_t, std::int64_t>> roaming{{1, 2}, {2, 4}, {5, 6}, {6, 4}};
    const std::set<std::pair<std::int64_t, std::int64_t>> main{{1, 3}, {4, 6}, {5, 6}, {6, 5}, {5, 4}};
    // A request and an acknowledge are taken in any state.
    if (isMain ? !main.contains({before, now}) && now != 1 && now != 4 : !roaming.contains({before, now})) {
        Accuse("the state of " + computers_[workstation]->Name() + " went from " + std::to_string(before) +
               " to " + std::to_string(now));
    }
    chronicle_.Note(computers_[computer_]->Name(), computers_[workstation]->Name() + " goes from state " +
                                                       std::to_string(before) + " to " + std::to_string(now));
    Pairing& pairing = pairings_[workstation];
    if (!isMain && (now == SyncStateInitialSyncRequested || now == SyncStateResetPending)) {
        ++pairing.laptopEpoch;
    }
    if (isMain && (now == SyncStateInitialSyncRequired || now == SyncStateResetPending)) {
        // The request that asked for it is among the files that it sees, or just retired.
        for (const auto& [name, file] : files_) {
            if (file.sender == workstation && file.epoch > pairing.mainEpoch && present_.contains(name) &&
                (file.descriptor.sequence == SyncResetSequence ||
                 file.descriptor.state == SyncFileInitialSyncRequest)) {
                pairing.mainEpoch = file.epoch;
            }
        }
    }
    if (now == SyncStateResetPending) {
        pairing.wasReset = true;
    }
}

/// Whoever notes changes as sent must have dropped the file that holds them, in this pass and with this number.
void Judge::DemandFile(std::size_t workstation, const End& before, const End& now) {
    const bool isMain = computers_[computer_]->IsMain();
    const bool sent = now.nextOut == before.nextOut + 1;
    const bool sentInitial =
        isMain && before.state == SyncStateInitialSyncRequired && now.state == SyncStateInitialSyncSent;
    if (sentInitial) {
        initialSyncs_.insert(workstation);
    }
    const bool gaveUp = !isMain && (now.state == SyncStateResetPending || before.state == SyncStateResetPending);
    if (now.lastAudit > before.lastAudit && !sent && !sentInitial && !gaveUp) {
        Accuse("LastAuditID of " + computers_[workstation]->Name() + " moved to " + std::to_string(now.lastAudit) +
               " and nothing was sent");
    }
    if (!sent && !sentInitial) {
        return;
    }
    const std::string& folder = folders_.Folder(computer_);
    for (const std::string& name : folders_.Names(computer_)) {
        if (present_.contains(name) || !name.ends_with(".zip") || WorkstationOf(computer_, name) != workstation) {
            continue;
        }
        const auto descriptor = ReadDescriptor(folder + "/" + name);
        if (descriptor && (sentInitial ? descriptor->state == SyncFileInitialSync
                                       : descriptor->state == 0 && descriptor->sequence == before.nextOut)) {
            if (!sentInitial && !descriptor->isReset) {
                DemandContent(folder + "/" + name, before.lastAudit, now.lastAudit);
            }
            return;
        }
    }
    if (HasRefused(BuildingAFile)) {
        Explain(workstation, loss::IncompleteFile);
        return;
    }
    Accuse("number " + std::to_string(before.nextOut) + " of " + computers_[workstation]->Name() +
           " counts as sent, and there is no such file in the Sync folder");
}

/// Every change of the range is in the file, if it still is one: a row that an import has made anew since, under
/// another local key, holds somebody else's version.
void Judge::DemandContent(const std::string& path, std::int64_t from, std::int64_t to) {
    if (editedInPass_ || HasRefused(BuildingAFile)) {
        return;
    }
    const std::string data = ReadEntry(path, "data.xml");
    const suite::SqliteConnection& company = computers_[computer_]->Company();
    suite::SqliteStatement changes = company.Prepare(
        "SELECT TableName, AuditUniqueID, MAX(AuditType), MAX(RecordID) FROM AuditLog WHERE ID > ? AND ID <= ? "
        "GROUP BY TableName, AuditUniqueID");
    changes.Bind(1, from);
    changes.Bind(2, to);
    while (changes.Step()) {
        const std::string table(changes.Text(0));
        const std::string id(changes.Text(1));
        const bool deleted = changes.Integer(2) == 3;
        if (data.find(id) == std::string::npos &&
            (deleted || company.Number("SELECT COUNT(*) FROM " + table + " WHERE UniqueID = '" + id +
                                       "' AND ID = " + std::to_string(changes.Integer(3))) != 0)) {
            Accuse("the change of " + table + " " + id + " counts as sent, and no file has carried it");
        }
    }
}

std::optional<Judge::Descriptor> Judge::ReadDescriptor(const std::string& path) {
    AgentContext context(outside_[computer_]->Services());
    FoundSyncFile entry;
    entry.FilePath = path;
    ReadSyncFile(context, entry);
    if (entry.From.empty()) {
        return std::nullopt;
    }
    return Descriptor{entry.From, entry.SyncState, entry.Sequence, entry.IsSyncReset == FieldTrue};
}

std::size_t Judge::WorkstationOf(std::size_t sender, const std::string& name) const {
    if (sender != 0) {
        return sender;
    }
    const std::string addressee = ToLower(name.substr(0, name.find('~')));
    for (std::size_t other = 1; other < computers_.size(); ++other) {
        if (ToLower(computers_[other]->UniqueID()) == addressee) {
            return other;
        }
    }
    return 0;
}

bool Judge::HasRefused(const std::set<std::string>& calls) const {
    for (const std::string& call : gate_->Refused()) {
        if (calls.contains(call)) {
            return true;
        }
    }
    return false;
}

} // namespace qndr::simulation
