#include "services/company_numbers.h"
#include "simulation/agreement.h"
#include "simulation/simulation.h"

#include "suite/admin/provisioning.h"

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
/// Rounds without a change in which an exchange has come to rest.
constexpr int StillRounds = 2;
/// A pairing is believed to be out of step only when that lasts, and a proof is one round behind the other.
constexpr int StillRoundsOfStanding = 50;
constexpr int MostRoundsOfStanding = 250;

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
        station.below->End();
        station.computer->SetClockError(0);
        station.agent.reset();
    }
    for (int mending = 0; mending <= MostMendings; ++mending) {
        if (!Exchange(options_.standing ? MostRoundsOfStanding : MostRounds)) {
            throw Violation{"the exchange does not come to rest"};
        }
        bool allAgree = true;
        for (std::size_t place = 1; place < stations_.size(); ++place) {
            if (!Agrees(place)) {
                if (options_.standing) {
                    throw Violation{stations_[place].computer->Name() + " does not mend by itself"};
                }
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
        AskTheDoctors();
        const std::string now = Position();
        still = now == before ? still + 1 : 0;
        if (still >= StillRounds && (!options_.standing || AllAgree() || still >= StillRoundsOfStanding)) {
            return true;
        }
        before = now;
    }
    return false;
}

bool Simulation::AllAgree() {
    for (std::size_t place = 1; place < stations_.size(); ++place) {
        if (!judge_->IsInStep(place) ||
            !DifferingRows(*stations_[0].computer, *stations_[place].computer, judge_->PairingOf(place)).empty()) {
            return false;
        }
    }
    return true;
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

void Simulation::Mend(std::size_t place) {
    const std::string& name = stations_[place].computer->Name();
    for (const std::string& file : judge_->FilesOf(place)) {
        folders_->Purge(file);
    }
    const auto [laptop, row] = judge_->States(place);
    const sql::Connection& company = stations_[place].computer->Company();
    if ((laptop == SyncStateReady || laptop == SyncStateResetPending) && row >= SyncStateReady) {
        chronicle_.Note(name, "is mended by a reset");
        suite::RequestReset(company);
    } else {
        chronicle_.Note(name, "is mended by a new initial sync");
        suite::RequestInitialSync(company);
        suite::ResetCountersOf(stations_[0].computer->Company(), stations_[place].computer->UniqueID());
        judge_->Accept(0);
    }
    judge_->Accept(place);
    judge_->PairingOf(place).wasReset = true;
    ++result_.resets;
}

/// A pairing that is out of step, or a row that differs, needs a loss of its own that explains it.
bool Simulation::Agrees(std::size_t place) {
    const std::string& name = stations_[place].computer->Name();
    const auto excuse = [&](const char* why, const std::string& what) {
        if (why == nullptr) {
            throw Violation{name + what + ", and no loss explains it"};
        }
        chronicle_.Note(name, what + ": " + why);
        ++result_.excused[why];
    };
    if (!judge_->IsInStep(place)) {
        excuse(judge_->Losses().ExplainStep(place), " is out of step with main");
        return false;
    }
    bool agrees = true;
    for (const auto& [id, table] :
         DifferingRows(*stations_[0].computer, *stations_[place].computer, judge_->PairingOf(place))) {
        excuse(judge_->Losses().ExplainRow(place, id), " differs from main in " + table + " " + id);
        agrees = false;
    }
    return agrees;
}

/// A file that main took twice may have undone what was changed in between. Its versions tell, unless a database
/// was restored and counts them anew, an old file came behind a reset, or the row was changed while it was
/// exported and travelled in two files.
void Simulation::DemandNothingTwice() const {
    sql::Statement twice = stations_[0].computer->Company().Prepare(
        "SELECT AuditUniqueID FROM AuditLog WHERE Origin IS NOT NULL GROUP BY TableName, AuditUniqueID, Origin, "
        "OriginID HAVING COUNT(*) > 1");
    while (twice.Step()) {
        const std::string id(twice.Text(0));
        if (!judge_->Losses().ExplainsTwice(id) && !judge_->EditedInPasses().contains(id)) {
            throw Violation{"main took a version of " + id + " a second time"};
        }
    }
}

/// A value is lost only with a file that carried it or a version that it was passed over for, or with a database
/// that held it.
void Simulation::DemandValues() {
    for (const auto& [value, place] : users_->LostValues()) {
        const char* const why = judge_->Losses().ExplainValue(value, place.row);
        if (why == nullptr) {
            throw Violation{"'" + value + "' (" + place.words + ") is lost, and no loss explains it"};
        }
        chronicle_.Note("all", "'" + value + "' is lost: " + why);
        ++result_.lostValues[why];
    }
}

} // namespace qndr::simulation
