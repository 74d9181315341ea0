#pragma once

#include "call_times.h"
#include "composition/computer_services.h"
#include "shared/activity.h"
#include "shared/agent_context.h"
#include "suite/computer/virtual_time.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <cstdint>
#include <memory>
#include <string>

namespace qndr::bench {

/// A computer of the dealer with one company on it. The pauses of the protocol cost nothing here; everything else
/// is as the agent does it.
class DealerComputer {
  public:
    /// Below `folder`, which holds the dealer's computers and the Sync folder. Nothing is made yet.
    DealerComputer(const std::string& folder, const std::string& name);

    /// Makes an empty company and sets the computer up for its role, one of the company types.
    void SetUp(int type);
    /// One pass of a newly started agent; `times`, if given, hears of all that it asks of the outside. The folder
    /// may be a copy of the one that was set up.
    void RunPass(CallTimes* times = nullptr, ActivityTarget* activity = nullptr);

    std::string Companies() const { return folder_ + "/" + name_ + "/Companies"; }
    std::string DatabaseFile() const { return Companies() + "/dealer.db"; }
    std::string SyncFolder() const { return folder_ + "/sync"; }
    std::unique_ptr<sql::Connection> Open() const;
    TimeServices Time() { return {time_, time_, time_}; }
    const suite::Computer& Computer() const { return computer_; }

  private:
    std::string folder_;
    std::string name_;
    suite::Computer computer_;
    suite::VirtualTime time_;
};

/// A running agent of one of the dealer's computers.
class RunningAgent {
  public:
    /// The gate, if there is one, stands in front of all that the agent asks of the outside.
    RunningAgent(DealerComputer& computer, services::CallGate* gate);

    void Pass(ActivityTarget* activity = nullptr);

  private:
    const ComputerServices outside_;
    AgentContext context_;
};

/// A main company filled with sample data and an empty laptop that is registered there and has to ask for its
/// initial sync. About `exchangedRows` rows of main are for the laptop.
struct Dealer {
    explicit Dealer(const std::string& folder) : main(folder, "main"), laptop(folder, "laptop") {}
    void SetUp(std::int64_t exchangedRows);

    DealerComputer main;
    DealerComputer laptop;
};

} // namespace qndr::bench
