#pragma once

#include "simulation/seeded_random.h"
#include "suite/computer/computer.h"
#include "suite/computer/virtual_time.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <memory>
#include <string>

namespace qndr::simulation {

/// A computer of the dealer with one company on it: real settings, archives and database below one folder, and a
/// clock of its own.
class SimulatedComputer {
  public:
    SimulatedComputer(const std::string& folder, const std::string& name);

    /// Makes the company, 1 main or 2 Roaming Workstation, and sets the computer up for its role.
    void SetUp(int type, const std::string& syncFolder, std::int32_t frequency, SeededRandom& random);

    const std::string& Name() const { return name_; }
    const suite::Computer& Places() const { return places_; }
    const std::string& SyncFolder() const { return syncFolder_; }
    std::string Companies() const { return folder_ + "/Companies"; }
    /// Of the company.
    const std::string& UniqueID() const { return uniqueId_; }
    bool IsMain() const { return isMain_; }

    suite::VirtualTime& Time() { return time_; }
    /// Moves on to that minute since the start. The clock then shows it with the error that it has, in minutes.
    void MoveTo(std::int64_t minute);
    void SetClockError(std::int64_t minutes) { clockError_ = minutes; }
    std::int64_t ClockError() const { return clockError_; }

    /// The application's connection to the company, which it keeps open.
    const sql::Connection& Company() const { return *company_; }
    std::int64_t Number(const std::string& statement) const { return company_->Number(statement, -1); }
    std::string Value(const std::string& statement) const { return company_->Value(statement).value_or(""); }

    void TakeBackup();
    bool HasBackup() const { return hasBackup_; }
    void RestoreBackup();

    void SetSetting(const std::string& name, std::int32_t value) const;
    std::size_t TemporaryFiles() const;
    void EmptyTemporaryFolder() const;
    /// Gives this computer's moment to every file that the last pass has made: the disk goes by the real clock.
    void StampNewFiles() const;

  private:
    std::string DatabaseFile() const { return Companies() + "/dealer.db"; }
    std::string BackupFile() const { return folder_ + "/backup.db"; }
    void OpenCompany();

    std::string name_;
    std::string folder_;
    suite::Computer places_;
    std::string syncFolder_;
    std::string uniqueId_;
    bool isMain_ = false;
    suite::VirtualTime time_;
    std::int64_t minute_ = 0;
    std::int64_t clockError_ = 0;
    std::unique_ptr<sql::Connection> company_;
    bool hasBackup_ = false;
};

} // namespace qndr::simulation
