#include "services/company_numbers.h"
#include "simulation/judge.h"
#include "syncfiles/descriptor.h"

namespace qndr::simulation {
namespace {

using Outcome = ImportWatch::Outcome;

/// Any of them leaves something of a descriptor unread, which then counts as 0 or empty.
const std::set<Call> ReadingADescriptor{calls::FileTools::FileExists,
                                        calls::IniTools::GetValue,
                                        calls::ObjectFactory::CreateZipArchive,
                                        calls::PathTools::CreateTemporaryFolder,
                                        calls::PathTools::FixPath,
                                        calls::ZipArchive::GetEntryByName,
                                        calls::ZipArchive::OpenZip,
                                        calls::ZipEntry::Extract};

bool IsRequest(const Descriptor& descriptor) {
    return descriptor.state == SyncFileInitialSyncRequest ||
           (descriptor.state == 0 && descriptor.sequence == SyncResetSequence);
}

} // namespace

/// A number that moves stands for a file of that number, whose data is in.
void Judge::DemandTaken(std::size_t workstation, const End& before, const End& now) {
    const std::string& name = watch_.File();
    const DroppedFile* const file = files_.Find(name);
    if (file == nullptr || file->sender == computer_ || file->workstation != workstation) {
        Accuse("number " + std::to_string(before.nextIn) + " of " + computers_[workstation]->Name() +
               " counts as taken, and there was no such file");
    }
    taken_.insert(name);
    DemandData(name, *file);
    DemandNumber(name, *file, before, now);
}

void Judge::DemandNumber(const std::string& name, const DroppedFile& file, const End& before, const End& now) {
    const FileNumber number{file.sender, EpochOf(file.workstation), before.nextIn};
    const char* wrong = nullptr;
    if (file.descriptor.state != 0) {
        wrong = loss::TakenAsChange;
    } else if (file.epoch != number.epoch) {
        wrong = loss::OldNumbering;
    } else if (file.descriptor.sequence != number.sequence ||
               (file.descriptor.isReset && now.state != SyncStateReady && !watch_.HasFailedUpdate())) {
        if (number.sequence != 0 || !(CouldNotBeRead() || !IsWhole(name, file))) {
            Accuse("it took " + name + ", which is number " + std::to_string(file.descriptor.sequence) +
                   ", for number " + std::to_string(number.sequence));
        }
        wrong = loss::UnreadableAsFirst;
    } else if (file.descriptor.isReset && now.state != SyncStateReady) {
        wrong = loss::RefusedUpdate;
    }
    if (wrong != nullptr) {
        KnownLoss instead = Loss(wrong, file.workstation, name);
        instead.number = number;
        if (file.epoch < number.epoch) {
            // Both ends may have begun a numbering since, of which the other end does not know.
            instead.number->epoch = file.epoch;
            instead.laterNumberings = true;
        }
        instead.breaksStep = true;
        Note(std::move(instead));
    }
}

/// What was imported is in. What is damaged is given up. All else waits for another try.
void Judge::DemandData(const std::string& name, const DroppedFile& file) {
    const Outcome outcome = watch_.OutcomeOf(name);
    if (outcome == Outcome::Imported || (!file.HasData() && outcome == Outcome::NoData)) {
        return;
    }
    if (outcome == Outcome::NotTried || outcome == Outcome::Unfinished) {
        Accuse(name + " counts as done, and its data was not brought to the engine");
    }
    if (IsWhole(name, file)) {
        Accuse(name + " counts as done, and its data, which is sound, is not in");
    }
    KnownLoss refused = Loss(loss::RefusedImport, file.workstation, name);
    refused.epoch = file.epoch;
    refused.breaksStep = file.IsFullData();
    refused.losesValues = false; // both ends know of it, and a reset keeps what was in it
    Note(std::move(refused));
}

/// A request or an acknowledge was followed.
void Judge::FollowRequest(std::size_t workstation, std::int64_t state) {
    const DroppedFile* const file = files_.Find(watch_.File());
    if (file == nullptr || file->workstation != workstation ||
        (state == SyncStateReady ? file->descriptor.state != SyncFileReady : !IsRequest(file->descriptor))) {
        Accuse(computers_[workstation]->Name() + " goes to state " + std::to_string(state) +
               ", and no file has asked for it");
    }
    Pairing& pairing = pairings_[workstation];
    if (state != SyncStateReady && file->epoch > pairing.mainEpoch) {
        pairing.mainEpoch = file->epoch;
    } else if (state != SyncStateReady || file->epoch < pairing.mainEpoch) {
        KnownLoss old = Loss(loss::OldNumbering, workstation, watch_.File());
        old.breaksStep = true;
        old.wholeNumbering = true;
        Note(std::move(old));
    }
}

/// Who takes a file away has done what it asks for, or has thrown away all files for a reset.
void Judge::DemandRetired(const std::string& name, const DroppedFile& file) {
    const std::set<std::int64_t>& states = states_[file.workstation];
    const Descriptor& descriptor = file.descriptor;
    if (taken_.contains(name) || ThrowsAllAway(file.workstation)) {
        return;
    }
    if (descriptor.state == SyncFileInitialSync) {
        DemandData(name, file);
        if (states.contains(SyncStateInitialSyncRequested) && !states.contains(SyncStateReady)) {
            if (gate_->WasQuiet()) {
                Accuse("it took its first data and did not acknowledge it");
            }
            KnownLoss silent = Loss(loss::NoAcknowledge, file.workstation, name);
            silent.breaksStep = true;
            silent.losesValues = false;
            Note(std::move(silent));
        }
        return;
    }
    const bool asks = IsRequest(descriptor) || descriptor.state == SyncFileReady;
    const std::int64_t asked = descriptor.state == SyncFileInitialSyncRequest ? SyncStateInitialSyncRequired
                               : descriptor.state == SyncFileReady            ? SyncStateReady
                                                                              : SyncStateResetPending;
    // One that does not say from whom it is was told as incomplete when it was dropped.
    if (asks && (states.contains(asked) || descriptor.from.empty())) {
        return;
    }
    // Whose it is could not be read, so that the update found nobody.
    const bool foundNobody = watch_.HasUpdatedNothing() && CouldNotBeRead();
    if (!asks || (!watch_.HasFailedUpdate() && !foundNobody)) {
        Accuse(name + " is gone, and nothing has come of it");
    }
    KnownLoss refused = Loss(loss::RefusedUpdate, file.workstation, name);
    refused.epoch = file.epoch;
    refused.breaksStep = true;
    refused.losesValues = false;
    Note(std::move(refused));
}

/// Main throws away what comes from a workstation in reset, and a workstation all that lies there for it when its
/// request is out.
bool Judge::ThrowsAllAway(std::size_t workstation) const {
    if (AtMain()) {
        return states_.at(workstation).contains(SyncStateResetPending);
    }
    for (const std::string& name : folders_.Names(computer_)) {
        const DroppedFile* const file = present_.contains(name) ? nullptr : files_.Find(name);
        if (file != nullptr && file->sender == computer_ && file->descriptor.sequence == SyncResetSequence) {
            return true;
        }
    }
    return false;
}

bool Judge::IsWhole(const std::string& name, const DroppedFile& file) const {
    return files_.ReadDescriptor(PathOf(name)) == file.descriptor &&
           DroppedFiles::ReadData(PathOf(name)) == file.data;
}

bool Judge::CouldNotBeRead() const {
    return HasRefused(ReadingADescriptor);
}

} // namespace qndr::simulation
