#include "simulation/simulation.h"

#include "suite/company/company_compare.h"
#include "suite/company/provisioning.h"

namespace qndr::simulation {
namespace {

constexpr std::int64_t DayMinutes = 24 * 60;
/// Longer than the quiet time that main waits for before it sends a reset's data.
constexpr std::int64_t RoundMinutes = 40;
/// Beyond the worst error of a clock.
constexpr std::int64_t SettlingDays = 4;
constexpr int MostRounds = 25;
/// Mending one pairing may show that another one is out of step.
constexpr int MostMendings = 3;

} // namespace

/// The faults end. What is out of step by then is so for a reason that was noted, and a reset mends it.
void Simulation::ComeToRest() {
    quiet_ = true;
    plan_.EndFaults();
    minute_ += SettlingDays * DayMinutes;
    chronicle_.SetTime(minute_);
    chronicle_.Note("all", "the faults end");
    folders_->DeliverAll();
    for (Station& station : stations_) {
        station.gate->SetDiskFull(false);
        station.gate->SetLocked(false);
        station.computer->SetClockError(0);
        station.agent.reset();
    }
    for (int mending = 0; mending <= MostMendings; ++mending) {
        if (!Exchange(MostRounds)) {
            throw Violation{"the exchange does not come to rest"};
        }
        bool allAgree = true;
        for (std::size_t place = 1; place < stations_.size(); ++place) {
            if (!judge_->IsInStep(place) || !Agrees(place)) {
                allAgree = false;
                Mend(place);
            }
        }
        if (allAgree) {
            DemandNothingTwice();
            DemandValues();
            return;
        }
    }
    throw Violation{"resets do not bring the companies to agree"};
}

bool Simulation::Exchange(int rounds) {
    std::string before = Position();
    int still = 0;
    for (int round = 0; round < rounds; ++round) {
        minute_ += RoundMinutes;
        chronicle_.SetTime(minute_);
        for (std::size_t place = stations_.size(); place-- > 0;) {
            RunPass(place);
        }
        const std::string now = Position();
        still = now == before ? still + 1 : 0;
        if (still == 2) {
            return true;
        }
        before = now;
    }
    return false;
}

/// How far everything has come.
std::string Simulation::Position() const {
    std::string position;
    for (std::size_t place = 0; place < stations_.size(); ++place) {
        position += stations_[place].computer->Value(
            "SELECT SyncState || ' ' || LastAuditID || ' ' || NextSequenceToMain || ' ' || NextSequenceFromMain "
            "|| "
            "' ' || ifnull((SELECT MAX(ID) FROM AuditLog), 0) || ' ' || ifnull((SELECT group_concat(SyncState || "
            "' ' || LastAuditID || ' ' || NextSequenceToRoaming || ' ' || NextSequenceFromRoaming) FROM "
            "RoamingWorkstations), '') FROM Company");
        for (const std::string& name : folders_->Names(place)) {
            if (name.ends_with(".zip")) {
                position += " " + name;
            }
        }
        position += "; ";
    }
    return position;
}

/// Behind a reset the workstation keeps rows that main does not have, and orders are not in its data.
bool Simulation::Agrees(std::size_t place) {
    const bool wasReset = judge_->PairingOf(place).wasReset;
    const auto tables =
        suite::CompareCompanies(stations_[0].computer->Company(), stations_[place].computer->Company(),
                                wasReset ? suite::Scope::Exchanged : suite::Scope::All);
    for (const auto& table : tables) {
        if (wasReset ? table.differing + table.onlyLeft != 0 : !table.Alike()) {
            chronicle_.Note(stations_[place].computer->Name(), "differs from main in " + table.table);
            return false;
        }
    }
    return true;
}

void Simulation::Mend(std::size_t place) {
    Pairing& pairing = judge_->PairingOf(place);
    const std::string& name = stations_[place].computer->Name();
    if (pairing.losses.empty()) {
        throw Violation{name + " is " + (judge_->IsInStep(place) ? "unlike main" : "out of step with main") +
                        ", and no loss explains it"};
    }
    for (const std::string& file : judge_->FilesOf(place)) {
        folders_->Purge(file);
    }
    const auto [laptop, row] = judge_->States(place);
    const suite::SqliteConnection& company = stations_[place].computer->Company();
    if ((laptop == 4 || laptop == 6) && row >= 4) {
        chronicle_.Note(name, "is mended by a reset");
        suite::RequestReset(company);
    } else {
        chronicle_.Note(name, "is mended by a new initial sync");
        suite::RequestInitialSync(company);
        suite::ResetCountersOf(stations_[0].computer->Company(), stations_[place].computer->UniqueID());
        judge_->Accept(0);
    }
    judge_->Accept(place);
    pairing.wasReset = true;
    ++result_.resets;
}

/// A file that main took twice may have undone what was changed in between. Its versions tell, unless a database
/// was restored and counts them anew, an old file came behind a reset, or a row was changed while it was exported
/// and travelled in two files.
void Simulation::DemandNothingTwice() const {
    const bool mayCountTwice = chronicle_.Losses().contains(loss::Restored) ||
                               chronicle_.Losses().contains(loss::OldNumbering) ||
                               chronicle_.Faults().contains("edit-in-pass");
    if (!mayCountTwice &&
        stations_[0].computer->Number(
            "SELECT COUNT(*) FROM (SELECT 1 FROM AuditLog WHERE Origin IS NOT NULL GROUP BY TableName, "
            "AuditUniqueID, Origin, OriginID HAVING COUNT(*) > 1)") != 0) {
        throw Violation{"main took a version a second time"};
    }
}

/// A file that is lost, or a first exchange that stops half-way, costs time and a reset, and no value: what a
/// workstation has sent and main has not confirmed is kept when the reset gives it up.
void Simulation::DemandValues() {
    const std::vector<std::string> lost = users_->LostValues();
    if (lost.empty()) {
        return;
    }
    for (const auto& [name, count] : chronicle_.Losses()) {
        if (name != loss::LostFile && name != loss::NoAcknowledge) {
            result_.lostValues = static_cast<std::int64_t>(lost.size());
            return;
        }
    }
    throw Violation{"the value " + lost.front() + " is lost, and no loss explains it"};
}

} // namespace qndr::simulation
