#pragma once

#include "services/agent_services.h"
#include "services/failure.h"

#include <cstdint>
#include <memory>
#include <string>

namespace qndr {

/// The process-wide state of one agent: one copy for the life of the process, handed to every routine by
/// reference.
struct AgentContext {
    explicit AgentContext(const services::AgentServices& outside) : services(outside) {}

    services::AgentServices services;

    /// A routine that needs nothing but the outside asks for that alone, and takes a context all the same.
    operator const services::AgentServices&() const { return services; }

    std::string Profile;          ///< from /Profile; empty for none
    std::string CompaniesFolder;  ///< folder of the .psd files
    std::int16_t OperatingMode{}; ///< 1 main, 2 Roaming Workstation, 0 before any company was reached
    std::string SyncFolder;       ///< the Sync folder of the last company that was processed; kept after the pass
    std::string MainUniqueID;     ///< read once per process, never cleared
    std::string RoamingUniqueID;  ///< read once per process, never cleared

    std::unique_ptr<services::SharedCodeLibrary> Library; ///< of the company in work; empty between companies
    std::unique_ptr<services::Engine> Engine;             ///< of the company in work; must go before Library

    /// The library of the company in work; raises when there is none.
    services::SharedCodeLibrary& CurrentLibrary() const {
        if (!Library) {
            throw services::Failure("no company is open");
        }
        return *Library;
    }
    services::Database& Database() const { return CurrentLibrary().Database(); }
    /// The engine of the company in work; raises when there is none.
    services::Engine& CurrentEngine() const {
        if (!Engine) {
            throw services::Failure("no Import/Export engine is open");
        }
        return *Engine;
    }
};

} // namespace qndr
