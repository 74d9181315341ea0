#include "simulation/judge.h"

#include "services/company_numbers.h"
#include "syncfiles/descriptor.h"
#include "text/letter_case.h"

#include <algorithm>

namespace qndr::simulation {
namespace {

/// The clean-ups ask for the age of folders that nothing has made yet.
bool IsOfAbsentFolder(const std::string& reason) {
    return reason.starts_with("there is no file or folder");
}

} // namespace

Judge::Judge(std::vector<SimulatedComputer*> computers, const SyncFolders& folders, Chronicle& chronicle)
    : computers_(std::move(computers)), folders_(folders), chronicle_(chronicle), files_(computers_),
      losses_(files_, chronicle), doctor_(computers_, folders) {
    for (std::size_t computer = 0; computer < computers_.size(); ++computer) {
        known_.push_back(Read(computer));
        if (computer > 0) {
            pairings_[computer] = {};
        }
    }
}

Judge::Ends Judge::Read(std::size_t computer) const {
    const sql::Connection& company = computers_[computer]->Company();
    Ends ends;
    if (computers_[computer]->IsMain()) {
        sql::Statement rows = company.Prepare("SELECT UniqueID, SyncState, LastAuditID, NextSequenceToRoaming, "
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
        sql::Statement row = company.Prepare(
            "SELECT SyncState, LastAuditID, NextSequenceToMain, NextSequenceFromMain FROM Company");
        row.Step();
        ends[computer] = {row.Integer(0), row.Integer(1), row.Integer(2), row.Integer(3)};
    }
    return ends;
}

void Judge::Accuse(const std::string& what) const {
    throw Violation{computers_[computer_]->Name() + ": " + what};
}

/// Of the numbering in which this end is.
KnownLoss Judge::Loss(const char* name, std::size_t workstation, const std::string& file) const {
    KnownLoss loss;
    loss.name = name;
    loss.workstation = workstation;
    loss.epoch = EpochOf(workstation);
    loss.file = SyncFolders::DroppedName(file);
    return loss;
}

void Judge::Note(KnownLoss loss) {
    const std::string& computer = computers_[loss.workstation]->Name();
    losses_.Note(std::move(loss), computer);
}

int Judge::EpochOf(std::size_t workstation) const {
    const Pairing& pairing = pairings_.at(workstation);
    return AtMain() ? pairing.mainEpoch : pairing.laptopEpoch;
}

void Judge::BeginPass(std::size_t computer, const FaultGate& gate) {
    computer_ = computer;
    gate_ = &gate;
    present_ = folders_.Names(computer);
    foreseen_ = doctor_.Foresee(computer);
    temporaryFiles_ = computers_[computer]->TemporaryFiles();
    firstAuditId_ = computers_[computer]->Company().Number("SELECT MAX(ID) FROM AuditLog");
    editedInPass_ = false;
    taken_.clear();
    sent_.clear();
    initialSyncs_.clear();
    states_.clear();
    for (const auto& [workstation, end] : known_[computer]) {
        states_[workstation].insert(end.state);
    }
    watch_.BeginPass();
}

/// What is out of step may be asked for anew there, as a person would.
void Judge::AcceptMending() {
    for (const auto& [workstation, end] : Read(computer_)) {
        if (end.state != known_[computer_][workstation].state) {
            chronicle_.Note(computers_[computer_]->Name(), "mends its pairing by itself");
            pairings_[workstation].wasReset = true;
            sent_.clear(); // it takes back what it has sent, and sends it again
        }
    }
    Accept(computer_);
}

void Judge::AfterCall(Call call) {
    if (call == calls::Standing::Exchange) {
        AcceptMending();
    }
    if (call != calls::Database::ExecuteNonQuery && call != calls::Engine::ImportFile) {
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

void Judge::EndPass(const std::vector<std::string>& abandoned, bool ranThrough) {
    AfterCall(calls::Database::ExecuteNonQuery);
    const std::set<std::string> names = folders_.Names(computer_);
    for (const std::string& name : names) {
        if (!present_.contains(name) && name.ends_with(".zip")) {
            NoteDropped(name);
            DemandNoted(name);
        }
    }
    for (const std::string& name : sent_) {
        if (!names.contains(name)) {
            Accuse(name + " counts as sent, and was lost with the power");
        }
    }
    for (const std::string& name : present_) {
        const DroppedFile* const file = files_.Find(name);
        if (!names.contains(name) && file != nullptr && file->sender != computer_) {
            DemandRetired(name, *file);
        }
    }
    DemandFates(names, ranThrough);
    if (editedInPass_) {
        sql::Statement edited = computers_[computer_]->Company().Prepare(
            "SELECT DISTINCT AuditUniqueID FROM AuditLog WHERE ID > ? AND Origin IS NULL");
        edited.Bind(1, firstAuditId_);
        while (edited.Step()) {
            editedInPasses_.emplace(edited.Text(0));
        }
    }
    if (!gate_->WasQuiet()) {
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

void Judge::Compare(std::size_t workstation, const End& before, const End& now) {
    CompareStates(workstation, before, now);
    const bool restarts = AtMain()
                              ? now.state == SyncStateResetPending
                              : now.state == SyncStateResetPending || now.state == SyncStateInitialSyncRequested;
    const auto moved = [&](std::int64_t from, std::int64_t to) {
        return to == from || to == from + 1 || (to == 0 && restarts && before.state != now.state) ||
               (to == 0 && restarts && AtMain());
    };
    if (!moved(before.nextOut, now.nextOut) || !moved(before.nextIn, now.nextIn)) {
        Accuse("a sequence of " + computers_[workstation]->Name() + " went from " +
               std::to_string(before.nextOut) + "/" + std::to_string(before.nextIn) + " to " +
               std::to_string(now.nextOut) + "/" + std::to_string(now.nextIn));
    }
    // A reset's data comes into an emptied log.
    const bool logMayBeEmpty = now.state == SyncStateInitialSyncRequested || before.state == SyncStateResetPending;
    // A first exchange's number that cannot be read is 0, and then everything travels once more.
    const bool couldNotBeRead = AtMain() && now.state == SyncStateInitialSyncSent && now.lastAudit == 0 &&
                                HasRefused({calls::Database::ExecuteScaler});
    if (now.lastAudit < before.lastAudit && (AtMain() ? !couldNotBeRead : !logMayBeEmpty)) {
        Accuse("LastAuditID of " + computers_[workstation]->Name() + " went back from " +
               std::to_string(before.lastAudit) + " to " + std::to_string(now.lastAudit));
    }
    if (now.nextIn == before.nextIn + 1) {
        DemandTaken(workstation, before, now);
    }
    DemandFile(workstation, before, now);
}

void Judge::CompareStates(std::size_t workstation, const End& before, const End& now) {
    if (before.state == now.state) {
        return;
    }
    const std::set<std::pair<std::int64_t, std::int64_t>> roaming{
        {SyncStateInitialSyncRequired, SyncStateInitialSyncRequested},
        {SyncStateInitialSyncRequested, SyncStateReady},
        {SyncStateResetRequested, SyncStateResetPending},
        {SyncStateResetPending, SyncStateReady}};
    const std::set<std::pair<std::int64_t, std::int64_t>> main{
        {SyncStateInitialSyncRequired, SyncStateInitialSyncSent},
        {SyncStateReady, SyncStateResetPending},
        {SyncStateResetRequested, SyncStateResetPending},
        {SyncStateResetPending, SyncStateResetRequested},
        {SyncStateResetRequested, SyncStateReady}};
    const std::pair move(before.state, now.state);
    // A request and an acknowledge are taken in any state.
    if (AtMain() ? !main.contains(move) && now.state != SyncStateInitialSyncRequired && now.state != SyncStateReady
                 : !roaming.contains(move)) {
        Accuse("the state of " + computers_[workstation]->Name() + " went from " + std::to_string(before.state) +
               " to " + std::to_string(now.state));
    }
    chronicle_.Note(computers_[computer_]->Name(), computers_[workstation]->Name() + " goes from state " +
                                                       std::to_string(before.state) + " to " +
                                                       std::to_string(now.state));
    states_[workstation].insert(now.state);
    Pairing& pairing = pairings_[workstation];
    if (now.state == SyncStateResetPending) {
        pairing.wasReset = true;
    }
    const bool sentResetData = before.state == SyncStateResetRequested && now.nextOut == before.nextOut + 1;
    if (AtMain()) {
        if (now.state == SyncStateInitialSyncRequired || now.state == SyncStateResetPending ||
            (now.state == SyncStateReady && !sentResetData)) {
            FollowRequest(workstation, now.state);
        }
        return;
    }
    if (now.state != SyncStateReady) {
        ++pairing.laptopEpoch;
    } else if (const DroppedFile* const file = files_.Find(watch_.File()); file == nullptr) {
        Accuse("it is ready, and no file has made it so");
    } else {
        DemandData(watch_.File(), *file);
        if (before.state == SyncStateInitialSyncRequested &&
            (file->descriptor.state != SyncFileInitialSync || file->epoch != pairing.laptopEpoch)) {
            KnownLoss old = Loss(loss::OldNumbering, workstation, watch_.File());
            old.breaksStep = true;
            // The data that main sends for this numbering comes to a workstation that is ready, which passes it
            // over.
            old.number = FileNumber{0, pairing.laptopEpoch, 0};
            Note(std::move(old));
        }
        losses_.NoteMended(workstation, pairing.laptopEpoch);
    }
}

void Judge::NoteLostFile(const std::string& name) {
    if (const DroppedFile* const file = files_.Find(name)) {
        KnownLoss lost = Loss(loss::LostFile, file->workstation, name);
        lost.epoch = file->epoch;
        lost.breaksStep = true;
        lost.losesValues = false; // what was sent and not confirmed is kept when a reset gives it up
        Note(std::move(lost));
    }
}

void Judge::NoteRestored(std::size_t computer, const std::set<std::string>& gone) {
    for (const auto& [workstation, pairing] : pairings_) {
        if (computer == 0 || workstation == computer) {
            KnownLoss restored = Loss(loss::Restored, workstation);
            restored.epoch = std::max(pairing.laptopEpoch, pairing.mainEpoch);
            restored.breaksStep = true;
            restored.wholeNumbering = true;
            restored.values = gone;
            Note(std::move(restored));
        }
    }
    Accept(computer);
}

std::size_t Judge::WorkstationOf(std::size_t sender, const std::string& name) const {
    if (sender != 0) {
        return sender;
    }
    const std::string addressee = text::ToLowerCase(name.substr(0, name.find('~')));
    for (std::size_t other = 1; other < computers_.size(); ++other) {
        if (text::ToLowerCase(computers_[other]->UniqueID()) == addressee) {
            return other;
        }
    }
    return 0;
}

std::set<std::string> Judge::FilesOf(std::size_t workstation) const {
    std::set<std::string> names;
    for (std::size_t computer = 0; computer < computers_.size(); ++computer) {
        for (const std::string& name : folders_.Names(computer)) {
            const DroppedFile* const file = files_.Find(name);
            if (file != nullptr && file->workstation == workstation) {
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

bool Judge::HasRefused(const std::set<Call>& calls) const {
    return std::any_of(gate_->Refused().begin(), gate_->Refused().end(),
                       [&](Call call) { return calls.contains(call); });
}

} // namespace qndr::simulation
