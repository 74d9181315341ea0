#include "simulation/simulation.h"

#include "diagnosis/troubles.h"
#include "services/company_numbers.h"
#include "services/failure.h"
#include "shared/failure_rule.h"
#include "shared/settings.h"
#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

namespace qndr::simulation {
namespace {

constexpr std::int64_t HourMinutes = 60;
constexpr std::int64_t DayMinutes = 24 * HourMinutes;
/// Longer than an agent of the simulation waits between its passes, so that each wake brings one.
constexpr std::int32_t Frequency = 30;
/// A workstation gives main so long to answer.
constexpr std::int64_t HeartbeatMinutes = 2 * Frequency;

class AbandonedStatements : public FailureObserver {
  public:
    void StatementAbandoned(const std::string& reason) override { reasons.push_back(reason); }
    std::vector<std::string> reasons;
};

} // namespace

Simulation::Simulation(const SimulationOptions& options)
    : options_(options), random_(options.seed), plan_(options.faults, random_), identifiers_(random_.Branch()) {
    if (options.workstations < 1 || options.days < 1) {
        throw services::Failure("a simulation needs a workstation and a day");
    }
    result_.faultsInPlan = plan_.Names();
    SetUp();
}

std::vector<SimulatedComputer*> Simulation::Computers() const {
    std::vector<SimulatedComputer*> computers;
    for (const Station& station : stations_) {
        computers.push_back(station.computer.get());
    }
    return computers;
}

void Simulation::SetUp() {
    std::vector<SyncFolders::Place> places;
    for (int number = 0; number <= options_.workstations; ++number) {
        const std::string name = number == 0 ? "main" : "laptop-" + std::to_string(number);
        Station station;
        station.computer = std::make_unique<SimulatedComputer>(options_.folder, name);
        station.below = std::make_unique<ComputerFaults>(*station.computer, plan_, random_.Branch(), chronicle_);
        station.gate = std::make_unique<FaultGate>(name, plan_, random_.Branch(), chronicle_, *station.below);
        station.nextWake = random_.Below(2 * HourMinutes);
        places.push_back({name, options_.folder + "/" + name + "/sync"});
        station.computer->SetUp(number == 0 ? suite::MainCompanyType : suite::RoamingCompanyType,
                                places.back().folder, Frequency, identifiers_);
        stations_.push_back(std::move(station));
    }
    folders_ = std::make_unique<SyncFolders>(places, plan_, random_.Branch(), chronicle_);
    users_ = std::make_unique<Users>(Computers(), random_.Branch(), chronicle_);
    for (std::size_t place = 1; place < stations_.size(); ++place) {
        suite::AddWorkstation(stations_[0].computer->Company(), stations_[place].computer->Company());
    }
    judge_ = std::make_unique<Judge>(Computers(), *folders_, chronicle_);
    folders_->OnLostFile([this](const std::string& name) { judge_->NoteLostFile(name); });
    for (std::size_t place = 0; place < stations_.size(); ++place) {
        if (options_.standing) {
            stations_[place].gate->AllowStanding();
        }
        stations_[place].gate->AfterCall([this](Call call) { judge_->AfterCall(call); });
        stations_[place].gate->OnEdit([this, place] {
            if (stations_[place].below->IsClosedToUsers()) {
                return;
            }
            chronicle_.NoteFault(stations_[place].computer->Name(), "edit-in-pass", "somebody works in the pass");
            users_->Edit(place);
            judge_->NoteEdit();
        });
        stations_[place].gate->OnStop([this, place] {
            chronicle_.NoteFault(stations_[place].computer->Name(), "stop-agent", "is asked to stop");
            stations_[place].computer->SetSetting(settings::StopSync, 1);
        });
    }
}

SimulationResult Simulation::Run() {
    try {
        LiveThrough(options_.days * DayMinutes);
        ComeToRest();
    } catch (const Violation& violation) {
        result_.violation = violation.what;
    }
    result_.edits = users_->Edits();
    result_.files = folders_->FilesDropped();
    result_.bytes = folders_->BytesDropped();
    for (const Station& station : stations_) {
        result_.conflicts += station.computer->Number("SELECT COUNT(*) FROM ImportConflicts");
    }
    result_.faults = chronicle_.Faults();
    result_.losses = chronicle_.Losses();
    result_.fingerprint = chronicle_.Fingerprint();
    result_.lastEvents.assign(chronicle_.LastEvents().begin(), chronicle_.LastEvents().end());
    return result_;
}

std::size_t Simulation::NextToWake() const {
    const auto next =
        std::min_element(stations_.begin(), stations_.end(),
                         [](const Station& left, const Station& right) { return left.nextWake < right.nextWake; });
    return static_cast<std::size_t>(next - stations_.begin());
}

void Simulation::LiveThrough(std::int64_t minutes) {
    for (std::size_t place = NextToWake(); stations_[place].nextWake < minutes; place = NextToWake()) {
        minute_ = stations_[place].nextWake;
        chronicle_.SetTime(minute_);
        stations_[place].computer->MoveTo(minute_);
        ActAround(place);
        RunPass(place);
        AskTheDoctors();
        ScheduleNextWake(place);
    }
}

/// What people do since the last pass of any computer, and what happens to the one that wakes.
void Simulation::ActAround(std::size_t place) {
    if (stations_[0].computer->Number("SELECT COUNT(*) FROM RoamingWorkstations WHERE SyncState <> " +
                                      std::to_string(SyncStateReady)) == 0) {
        users_->BeginOrders();
    }
    for (std::int64_t edits = random_.Below(4); edits > 0; --edits) {
        const auto busy = static_cast<std::size_t>(random_.Below(static_cast<std::int64_t>(stations_.size())));
        if (!stations_[busy].below->IsClosedToUsers()) {
            stations_[busy].computer->MoveTo(minute_);
            users_->Edit(busy);
        }
    }
    SimulatedComputer& computer = *stations_[place].computer;
    if (place != 0 && random_.Chance(plan_.Rate(Fault::Reset)) && judge_->States(place).first == SyncStateReady &&
        !stations_[place].below->IsClosedToUsers()) {
        chronicle_.NoteFault(computer.Name(), "reset", "asks for a reset");
        suite::RequestReset(computer.Company());
        judge_->PairingOf(place).wasReset = true;
        judge_->Accept(place);
    }
    if (plan_.Has(Fault::RestoreBackup) && !stations_[place].below->IsClosedToUsers()) {
        RestoreBackup(place);
    }
    stations_[place].below->MoveTo(minute_);
    SetClock(place);
}

void Simulation::RestoreBackup(std::size_t place) {
    SimulatedComputer& computer = *stations_[place].computer;
    if (computer.HasBackup() && random_.Chance(plan_.Rate(Fault::RestoreBackup))) {
        chronicle_.NoteFault(computer.Name(), "restore-backup", "its database is restored from a backup");
        stations_[place].agent.reset();
        std::set<std::string> gone = users_->ValuesInRows(place);
        gone.merge(users_->KeptValues(place));
        computer.RestoreBackup();
        std::set<std::string> back = users_->ValuesInRows(place);
        back.merge(users_->KeptValues(place));
        for (const std::string& value : back) {
            gone.erase(value);
        }
        judge_->NoteRestored(place, gone);
    } else if (random_.Chance(0.1)) {
        computer.TakeBackup();
        chronicle_.Note(computer.Name(), "its database is backed up");
    }
}

void Simulation::SetClock(std::size_t place) {
    Station& station = stations_[place];
    const std::string& name = station.computer->Name();
    if (station.clockWrongUntil <= minute_) {
        std::int64_t error = 0;
        if (random_.Chance(plan_.Rate(Fault::JumpClock))) {
            error = random_.Below(6 * DayMinutes) - 3 * DayMinutes;
            chronicle_.NoteFault(name, "jump-clock",
                                 "its clock is set " + std::to_string(error) + " minutes wrong");
        } else if (random_.Chance(plan_.Rate(Fault::DriftClock))) {
            error = random_.Below(30) - 15;
            chronicle_.NoteFault(name, "drift-clock",
                                 "its clock goes " + std::to_string(error) + " minutes wrong");
        }
        station.computer->SetClockError(error);
        station.clockWrongUntil = minute_ + random_.Below(DayMinutes);
    }
}

void Simulation::RunPass(std::size_t place) {
    Station& station = stations_[place];
    SimulatedComputer& computer = *station.computer;
    computer.MoveTo(minute_);
    folders_->Deliver(place, minute_);
    station.gate->BeginPass();
    station.below->BeginPass();
    UnflushedFiles unflushed(computer.SyncFolder());
    judge_->BeginPass(place, *station.gate);
    AbandonedStatements abandoned;
    {
        const ObserveFailures observing(abandoned);
        try {
            if (station.agent == nullptr) {
                station.agent = std::make_unique<AgentProcess>(computer, *station.gate, *station.below, plan_,
                                                               identifiers_, chronicle_, judge_->Watch());
                station.agent->Load();
            }
            if (quiet_) {
                station.agent->SyncNow();
            }
            station.agent->RunUntilNextTick();
        } catch (const AgentDied&) {
            station.agent.reset();
            computer.EmptyTemporaryFolder();
            if (plan_.Has(Fault::PowerCut) && random_.Chance(0.5)) {
                LosePower(place, unflushed);
            }
        }
    }
    const bool ranThrough = station.agent != nullptr && station.agent->HasRunThrough();
    station.below->EndPass();
    if (random_.Chance(plan_.Rate(Fault::PowerCut))) {
        LosePower(place, unflushed);
    }
    if (station.agent != nullptr && station.agent->HasEnded()) {
        chronicle_.Note(computer.Name(), "its agent ends");
        station.agent.reset();
    }
    ++result_.passes;
    computer.StampNewFiles();
    judge_->EndPass(abandoned.reasons, ranThrough);
    folders_->Collect(place, minute_);
    station.minutesWithoutMain = minute_ - std::exchange(mainPassed_, place == 0 ? minute_ : mainPassed_);
}

/// Where nothing goes wrong there is no trouble, but that main sleeps for longer than its agent may, and that
/// people let losing versions lie.
void Simulation::AskTheDoctors() {
    if (!result_.faultsInPlan.empty()) {
        return;
    }
    for (std::size_t place = 0; place < stations_.size(); ++place) {
        std::set<std::string_view> real{diagnosis::troubles::ConflictsOpen.code};
        if (stations_[place].minutesWithoutMain >= HeartbeatMinutes) {
            real.insert(diagnosis::troubles::MainNoResponse.code);
        }
        if (minute_ - mainPassed_ >= DayMinutes) {
            real.insert(diagnosis::troubles::HeartbeatUnanswered.code);
        }
        stations_[place].computer->MoveTo(minute_);
        judge_->DemandNoTrouble(place, real);
    }
}

void Simulation::LosePower(std::size_t place, UnflushedFiles& files) {
    Station& station = stations_[place];
    chronicle_.NoteFault(station.computer->Name(), "power-cut", "loses its power");
    station.agent.reset();
    station.computer->EmptyTemporaryFolder();
    for (const std::string& name : files.Lose()) {
        chronicle_.Note(station.computer->Name(), name + " was not made durable");
    }
}

void Simulation::ScheduleNextWake(std::size_t place) {
    std::int64_t pause = Frequency + 2 + random_.Below(3 * HourMinutes);
    if (place != 0 && random_.Chance(plan_.Rate(Fault::Sleep))) {
        pause = random_.Below(21 * DayMinutes);
        chronicle_.NoteFault(stations_[place].computer->Name(), "sleep",
                             "sleeps for " + std::to_string(pause / DayMinutes) + " days");
    }
    stations_[place].nextWake = minute_ + pause;
}

} // namespace qndr::simulation
