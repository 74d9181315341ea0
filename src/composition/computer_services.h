#pragma once

#include "services/agent_services.h"
#include "services/gated/call_gate.h"
#include "suite/computer/computer.h"
#include "suite/files/file_reads.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qndr {

/// Where an agent's time and messages come from: the computer's clock and a loop, or a virtual time. The objects
/// belong to the caller and outlive the services.
struct TimeServices {
    services::Clock& clock;
    services::MessagePump& messages;
    services::WaitableTimers& timers;
};

/// The outside of one agent on one computer: the suite's services and the folder library, each behind its
/// forwarding wrapper. Several objects for one computer are like several processes on it.
class ComputerServices {
  public:
    /// The program goes by `programName` in its log, its timers and the test for another copy; `switchNames` are
    /// what it knows on its command line. The gate, if there is one, outlives the object and stands in front of
    /// every call of the agent. `reads` takes the place of the system's calls by which archives are read. From
    /// then on all that the process makes is for its user alone; what goes into the Sync folder is also for those
    /// who may write there.
    ComputerServices(const suite::Computer& computer, const TimeServices& time, const std::string& programName,
                     const std::vector<std::string>& switchNames, services::CallGate* gate = nullptr,
                     suite::FileReads* reads = nullptr);
    ~ComputerServices();
    ComputerServices(const ComputerServices&) = delete;
    ComputerServices& operator=(const ComputerServices&) = delete;

    const services::AgentServices& Services() const;
    /// Whom to tell what an import waits for: the text for the activity line, and an empty one when the wait is
    /// over.
    void TellWaitsTo(std::function<void(const std::string&)> teller);
    /// Whom to tell, in a line, that a company is left alone because another agent works on it: once, and again
    /// only when it was had in between.
    void TellCompaniesLeftAloneTo(std::function<void(const std::string&)> teller);

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace qndr
