#include "simulation/judge.h"

#include "shared/text.h"
#include "syncfiles/descriptor.h"
#include "syncfiles/sync_state.h"

namespace qndr::simulation {
namespace {

/// The clean-ups ask for the age of folders that nothing has made yet.
bool IsOfAbsentFolder(const std::string& reason) {
    return reason.starts_with("there is no file or folder");
}

} // namespace

void Judge::EndPass(const std::vector<std::string>& abandoned) {
    AfterCall("Database.ExecuteNonQuery");
    for (const std::string& name : folders_.Names(computer_)) {
        if (!present_.contains(name) && name.ends_with(".zip")) {
            NoteDropped(name);
        }
    }
    NoteRefusals();
    NoteMissingAcknowledge();
    if (gate_->Died() || !gate_->Refused().empty()) {
        return;
    }
    if (computers_[computer_]->TemporaryFiles() > temporaryFiles_) {
        Accuse("something was left in the temporary folder");
    }
    for (const std::string& reason : abandoned) {
        if (!IsOfAbsentFolder(reason)) {
            Accuse("a statement was abandoned for no injected fault: " + reason);
        }
    }
}

void Judge::NoteDropped(const std::string& name) {
    Dropped file{.sender = computer_, .workstation = WorkstationOf(computer_, name), .descriptor = {}, .epoch = 0};
    if (file.workstation == 0) {
        return;
    }
    const Pairing& pairing = pairings_[file.workstation];
    file.epoch = computer_ == 0 ? pairing.mainEpoch : pairing.laptopEpoch;
    if (const auto descriptor = ReadDescriptor(folders_.Folder(computer_) + "/" + name)) {
        file.descriptor = *descriptor;
    } else if (!HasRefused({"IniTools.SetValue", "PathTools.FixPath", "Database.ExecuteScaler"})) {
        Accuse("it dropped " + name + ", which nobody can read");
    } else {
        Explain(file.workstation, loss::IncompleteFile);
    }
    chronicle_.Note(computers_[computer_]->Name(),
                    "drops " + name + ", state " + std::to_string(file.descriptor.state) + ", sequence " +
                        std::to_string(file.descriptor.sequence) + (file.descriptor.isReset ? ", full data" : ""));
    NoteSentTwice(file);
    files_[name] = file;
}

/// A file went out, and the number or the state that says so did not move: it goes out again.
void Judge::NoteSentTwice(const Dropped& file) {
    const End& end = known_[computer_][file.workstation];
    const Descriptor& descriptor = file.descriptor;
    bool isStored = end.nextOut != descriptor.sequence;
    if (computer_ == 0 && descriptor.state == SyncFileInitialSync) {
        isStored = initialSyncs_.contains(file.workstation);
    } else if (computer_ == 0 && descriptor.isReset) {
        isStored = end.state != SyncStateResetRequested;
    } else if (descriptor.state == SyncFileInitialSyncRequest) {
        isStored = end.state != SyncStateInitialSyncRequired;
    } else if (descriptor.state == SyncFileReady) {
        isStored = end.state != SyncStateInitialSyncRequested;
    } else if (descriptor.sequence == SyncResetSequence) {
        isStored = end.state != SyncStateResetRequested;
    }
    if (!isStored) {
        if (!gate_->Died() && gate_->Refused().empty()) {
            Accuse("a file was dropped and not noted as sent");
        }
        Explain(file.workstation, loss::SentTwice);
    }
}

void Judge::NoteRefusals() {
    static const std::set<std::string> refusingAnImport{"Engine.ImportFile",
                                                        "IniTools.GetValue",
                                                        "Engine.Initialize",
                                                        "ZipArchive.OpenZip",
                                                        "ZipArchive.GetEntryByName",
                                                        "ZipEntry.Extract",
                                                        "ObjectFactory.CreateZipArchive",
                                                        "PathTools.CreateTemporaryFolder"};
    if (HasRefused(refusingAnImport)) {
        ExplainAll(loss::RefusedImport);
    }
    if (HasRefused({"Engine.AddToExport"})) {
        ExplainAll(loss::IncompleteFile);
    }
    // Few updates are looked at, and the file that led to one is retired all the same.
    if (HasRefused({"Database.ExecuteNonQuery"})) {
        ExplainAll(loss::RefusedUpdate);
    }
}

/// Once it is taken, the initial sync is gone, whether or not the acknowledge could be sent.
void Judge::NoteMissingAcknowledge() {
    if (computer_ == 0 || known_[computer_][computer_].state != SyncStateInitialSyncRequested) {
        return;
    }
    const std::set<std::string> names = folders_.Names(computer_);
    for (const std::string& name : present_) {
        const auto found = files_.find(SyncFolders::DroppedName(name));
        if (!names.contains(name) && found != files_.end() && found->second.workstation == computer_ &&
            found->second.descriptor.state == SyncFileInitialSync) {
            Explain(computer_, loss::NoAcknowledge);
        }
    }
}

void Judge::NoteOldFiles() {
    for (const std::string& name : present_) {
        const auto found = files_.find(SyncFolders::DroppedName(name));
        if (found == files_.end() || found->second.sender == computer_ ||
            (computer_ != 0 && found->second.workstation != computer_)) {
            continue;
        }
        if (IsOld(found->second)) {
            Explain(found->second.workstation, loss::OldNumbering);
        }
    }
}

/// A file of the first exchange and one whose descriptor cannot be read have no number and so count as number 0,
/// if they lie there when that is expected: they could not be retired, or came a second time.
void Judge::NoteTakenAsFirst(std::size_t workstation) {
    for (const std::string& name : folders_.Names(computer_)) {
        const auto found = files_.find(SyncFolders::DroppedName(name));
        if (found == files_.end() || found->second.workstation != workstation ||
            found->second.sender == computer_) {
            continue;
        }
        if (found->second.descriptor.state != 0) {
            Explain(workstation, loss::TakenAsChange);
        } else if (computer_ != 0 && !ReadDescriptor(folders_.Folder(computer_) + "/" + name)) {
            Explain(workstation, loss::UnreadableAsFirst);
        }
    }
}

/// Whether this end would take the file for one of the present numbering, which it is not.
bool Judge::IsOld(const Dropped& file) {
    const Pairing& pairing = pairings_[file.workstation];
    const End& end = known_[computer_][file.workstation];
    const Descriptor& descriptor = file.descriptor;
    if (computer_ != 0) {
        if (file.epoch >= pairing.laptopEpoch) {
            return false;
        }
        return descriptor.state == SyncFileInitialSync || descriptor.sequence >= end.nextIn;
    }
    if (descriptor.state == SyncFileInitialSyncRequest || descriptor.sequence == SyncResetSequence) {
        return file.epoch <= pairing.mainEpoch; // it was followed already
    }
    return file.epoch < pairing.mainEpoch &&
           (descriptor.state == SyncFileReady || descriptor.sequence >= end.nextIn);
}

void Judge::NoteLostFile(const std::string& name) {
    if (const auto found = files_.find(name); found != files_.end()) {
        Explain(found->second.workstation, loss::LostFile);
    }
}

void Judge::NoteRestored(std::size_t computer) {
    for (const auto& [workstation, pairing] : pairings_) {
        if (computer == 0 || workstation == computer) {
            Explain(workstation, loss::Restored);
        }
    }
    Accept(computer);
}

std::set<std::string> Judge::FilesOf(std::size_t workstation) const {
    std::set<std::string> names;
    for (std::size_t computer = 0; computer < computers_.size(); ++computer) {
        for (const std::string& name : folders_.Names(computer)) {
            const auto found = files_.find(SyncFolders::DroppedName(name));
            if (found != files_.end() && found->second.workstation == workstation) {
                names.insert(SyncFolders::DroppedName(name));
            }
        }
    }
    return names;
}

std::pair<std::int64_t, std::int64_t> Judge::States(std::size_t workstation) const {
    return {Read(workstation).at(workstation).state, Read(0).at(workstation).state};
}

bool Judge::IsInStep(std::size_t workstation) const {
    const End laptop = Read(workstation).at(workstation);
    const End row = Read(0).at(workstation);
    const auto highest = [&](std::size_t computer) {
        return computers_[computer]->Company().Number("SELECT MAX(ID) FROM AuditLog", 0);
    };
    return laptop.state == SyncStateReady && row.state == SyncStateReady && laptop.nextOut == row.nextIn &&
           laptop.nextIn == row.nextOut && laptop.lastAudit >= highest(workstation) && row.lastAudit >= highest(0);
}

} // namespace qndr::simulation
