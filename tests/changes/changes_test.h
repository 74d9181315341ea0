#pragma once

#include "support/agent_bench.h"

namespace qndr::testing {

/// For twin steps: the parameter is the type of the company that runs one of them.
class TwinsTest : public AgentBench, public ::testing::WithParamInterface<int> {
  protected:
    TwinsTest() {
        OpenCompany(GetParam());
        AddWorkstation(RoamingID, 4);
        Sql("UPDATE Company SET SyncState = 4");
    }
    bool IsMain() const { return GetParam() == 1; }
    std::string Pick(const std::string& main, const std::string& roaming) const {
        return IsMain() ? main : roaming;
    }
};

} // namespace qndr::testing
