#include "services/company_numbers.h"
#include "simulation/judge.h"
#include "simulation/users.h"
#include "suite/schema/company_schema.h"
#include "syncfiles/descriptor.h"

namespace qndr::simulation {
namespace {

/// No write of a descriptor is examined, and a number or an identity that cannot be read is 0 or empty. An entry
/// that cannot be added is passed over.
const std::set<Call> BuildingAFile{calls::IniTools::SetValue, calls::PathTools::FixPath,
                                   calls::Database::ExecuteScaler, calls::Engine::AddToExport,
                                   calls::Database::ExecuteRead};

/// Stands in data.xml before the identity of a record; references to it have none.
const std::string RowMark = "<UniqueID>";

} // namespace

/// Whoever notes changes as sent must have dropped the file that holds them, in this pass and with this number.
void Judge::DemandFile(std::size_t workstation, const End& before, const End& now) {
    const bool sent = now.nextOut == before.nextOut + 1;
    const bool sentInitial =
        AtMain() && before.state == SyncStateInitialSyncRequired && now.state == SyncStateInitialSyncSent;
    const bool gaveUp = !AtMain() && (now.state == SyncStateResetPending || before.state == SyncStateResetPending);
    if (now.lastAudit > before.lastAudit && !sent && !sentInitial && !gaveUp) {
        Accuse("LastAuditID of " + computers_[workstation]->Name() + " moved to " + std::to_string(now.lastAudit) +
               " and nothing was sent");
    }
    if (!sent && !sentInitial) {
        return;
    }
    if (sentInitial) {
        initialSyncs_.insert(workstation);
        NotePassedOver(workstation, before.lastAudit, now.lastAudit);
    }
    for (const std::string& name : folders_.Names(computer_)) {
        if (present_.contains(name) || !name.ends_with(".zip") || WorkstationOf(computer_, name) != workstation) {
            continue;
        }
        NoteDropped(name);
        const DroppedFile& file = *files_.Find(name);
        if (sentInitial ? file.descriptor.state != SyncFileInitialSync
                        : file.descriptor.state != 0 || file.descriptor.sequence != before.nextOut) {
            continue;
        }
        sent_.insert(name);
        if (file.IsFullData()) {
            pairings_[workstation].fullDataAuditId = now.lastAudit;
            DemandFullData(name, now.lastAudit);
        } else {
            DemandChanges(name, before.lastAudit, now.lastAudit);
        }
        return;
    }
    if (!HasRefused(BuildingAFile)) {
        Accuse("number " + std::to_string(before.nextOut) + " of " + computers_[workstation]->Name() +
               " counts as sent, and there is no such file in the Sync folder");
    }
    KnownLoss incomplete = Loss(loss::IncompleteFile, workstation);
    incomplete.number = FileNumber{computer_, EpochOf(workstation), before.nextOut};
    incomplete.breaksStep = true;
    Note(std::move(incomplete));
}

/// A workstation that was ready and is sent its first data again, because an old request came, gets nothing of
/// what that data leaves out.
void Judge::NotePassedOver(std::size_t workstation, std::int64_t from, std::int64_t to) {
    sql::Statement changes = computers_[computer_]->Company().Prepare(
        "SELECT TableName, AuditUniqueID FROM AuditLog WHERE ID > ? AND ID <= ?");
    changes.Bind(1, from);
    changes.Bind(2, to);
    while (changes.Step()) {
        if (!suite::IsWhollyExported(*suite::FindAuditedTable(changes.Text(0)))) {
            losses_.AddToNumbering(workstation, std::string(changes.Text(1)));
        }
    }
}

/// Every change of the range is in the file with the values that the row has, unless it was changed once more
/// since the range was read. A row that an import has made anew, under another local key, holds somebody else's
/// version.
void Judge::DemandChanges(const std::string& name, std::int64_t from, std::int64_t to) {
    const DroppedFile& file = *files_.Find(name);
    const sql::Connection& company = computers_[computer_]->Company();
    sql::Statement changes = company.Prepare(
        "SELECT TableName, AuditUniqueID, MAX(AuditType), MAX(RecordID) FROM AuditLog WHERE ID > ? AND ID <= ? "
        "GROUP BY TableName, AuditUniqueID");
    changes.Bind(1, from);
    changes.Bind(2, to);
    while (changes.Step()) {
        const std::string table(changes.Text(0));
        const std::string id(changes.Text(1));
        const bool deleted = changes.Integer(2) == AuditDeletion;
        const bool stands = company.Number("SELECT COUNT(*) FROM " + table + " WHERE UniqueID = '" + id +
                                           "' AND ID = " + std::to_string(changes.Integer(3))) != 0;
        const bool isMissing = stands ? Lacks(file, table, id) : deleted && !file.Carries(RowMark + id);
        if (isMissing && !IsNewer(id, to)) {
            NoteMissing(name, table, id);
        }
    }
}

/// Of the tables that full data carries whole, every row is in the file, unless it will come behind it.
void Judge::DemandFullData(const std::string& name, std::int64_t lastAudit) {
    const DroppedFile& file = *files_.Find(name);
    std::set<std::string> tables;
    for (const EntryPlace& place : EntryPlaces()) {
        if (suite::IsWhollyExported(*suite::FindAuditedTable(place.table))) {
            tables.insert(place.table);
        }
    }
    for (const std::string& table : tables) {
        sql::Statement rows = computers_[computer_]->Company().Prepare("SELECT UniqueID FROM " + table);
        while (rows.Step()) {
            const std::string id(rows.Text(0));
            if (!IsNewer(id, lastAudit) && Lacks(file, table, id)) {
                NoteMissing(name, table, id);
            }
        }
    }
}

bool Judge::IsNewer(const std::string& id, std::int64_t audit) const {
    return computers_[computer_]->Company().Number("SELECT COUNT(*) FROM AuditLog WHERE AuditUniqueID = '" + id +
                                                   "' AND ID > " + std::to_string(audit)) != 0;
}

bool Judge::Lacks(const DroppedFile& file, const std::string& table, const std::string& id) const {
    if (!file.Carries(RowMark + id)) {
        return true;
    }
    for (const std::string& value : ValuesOf(table, id)) {
        if (!file.Carries(value)) {
            return true;
        }
    }
    return false;
}

std::set<std::string> Judge::ValuesOf(const std::string& table, const std::string& id) const {
    std::set<std::string> values;
    for (const EntryPlace& place : EntryPlaces()) {
        if (table == place.table) {
            CollectValues(computers_[computer_]->Value("SELECT " + std::string(place.column) + " FROM " + table +
                                                       " WHERE UniqueID = '" + id + "'"),
                          values);
        }
    }
    return values;
}

void Judge::NoteMissing(const std::string& name, const std::string& table, const std::string& id) {
    if (!HasRefused(BuildingAFile)) {
        Accuse("the change of " + table + " " + id + " counts as sent, and no file has carried it");
    }
    KnownLoss incomplete = Loss(loss::IncompleteFile, files_.Find(name)->workstation);
    incomplete.rows.insert(id);
    incomplete.values = ValuesOf(table, id);
    Note(std::move(incomplete));
}

/// Takes the file up, once.
void Judge::NoteDropped(const std::string& name) {
    DroppedFile file;
    file.sender = computer_;
    file.workstation = WorkstationOf(computer_, name);
    if (file.workstation == 0 || files_.Find(name) != nullptr) {
        return;
    }
    file.epoch = EpochOf(file.workstation);
    file.descriptor = files_.ReadDescriptor(PathOf(name));
    file.data = DroppedFiles::ReadData(PathOf(name)).value_or("");
    chronicle_.Note(computers_[computer_]->Name(),
                    "drops " + name + ", state " + std::to_string(file.descriptor.state) + ", sequence " +
                        std::to_string(file.descriptor.sequence) + (file.descriptor.isReset ? ", full data" : ""));
    const bool isNobodys = file.descriptor.from.empty();
    const bool goesAstray = file.descriptor.state == SyncFileReady && name.starts_with("MAIN~");
    files_.Add(name, std::move(file));
    if (isNobodys) {
        NoteIncomplete(name);
    }
    if (goesAstray) {
        NoteAstray(name);
    }
}

/// The workstation could not read whose data it took, and from now on all that it sends is for nobody.
void Judge::NoteAstray(const std::string& name) {
    const std::size_t workstation = files_.Find(name)->workstation;
    const bool wasNamed = std::none_of(files_.All().begin(), files_.All().end(), [&](const auto& entry) {
        const DroppedFile& file = entry.second;
        return file.workstation == workstation && file.descriptor.state == SyncFileInitialSync &&
               file.descriptor.from.empty();
    });
    if (wasNamed && gate_->WasQuiet()) {
        Accuse("it acknowledges its first data to nobody, and nothing has gone wrong");
    }
    KnownLoss astray = Loss(loss::NoAcknowledge, workstation, name);
    astray.breaksStep = true;
    astray.wholeNumbering = true;
    Note(std::move(astray));
}

/// Its descriptor says less than it should.
void Judge::NoteIncomplete(const std::string& name) {
    if (!HasRefused({calls::IniTools::SetValue, calls::PathTools::FixPath, calls::Database::ExecuteScaler})) {
        Accuse("it dropped " + name + ", which does not say what it is");
    }
    KnownLoss incomplete = Loss(loss::IncompleteFile, files_.Find(name)->workstation, name);
    incomplete.breaksStep = true;
    Note(std::move(incomplete));
}

/// A file went out, and the number or the state that says so did not move: it goes out again.
void Judge::DemandNoted(const std::string& name) {
    const DroppedFile* const file = files_.Find(name);
    if (file == nullptr) {
        return;
    }
    const End& end = known_[computer_][file->workstation];
    const Descriptor& descriptor = file->descriptor;
    bool isStored = end.nextOut != descriptor.sequence;
    if (AtMain() && descriptor.state == SyncFileInitialSync) {
        isStored = initialSyncs_.contains(file->workstation);
    } else if (AtMain() && descriptor.isReset) {
        isStored = end.state != SyncStateResetRequested;
    } else if (descriptor.state == SyncFileInitialSyncRequest) {
        isStored = end.state != SyncStateInitialSyncRequired;
    } else if (descriptor.state == SyncFileReady) {
        isStored = end.state != SyncStateInitialSyncRequested;
    } else if (descriptor.sequence == SyncResetSequence) {
        isStored = end.state != SyncStateResetRequested;
    }
    if (isStored) {
        return;
    }
    if (!gate_->Died() && !watch_.HasFailedUpdate()) {
        NoteIncomplete(name);
        return;
    }
    KnownLoss twice = Loss(loss::SentTwice, file->workstation, name);
    twice.breaksStep = true;
    const bool isChange = descriptor.state == 0 && descriptor.sequence != SyncResetSequence;
    if (isChange || descriptor.state == SyncFileInitialSync) {
        twice.number = file->Number();
    }
    Note(std::move(twice));
}

} // namespace qndr::simulation
