#pragma once

#include "support/agent_bench.h"

namespace qndr::testing {

/// A company whose audit log the test writes itself.
class ChangesTest : public AgentBench {
  protected:
    /// What a step of main logs for one workstation, between the lines that say what it is doing.
    Lines RunForOne(Step step, const std::string& doing) {
        Lines lines = Run(step);
        const std::string rest = " " + doing + " roaming workstation 'Laptop'.";
        EXPECT_EQ((Lines{lines.front(), lines.back()}), (Lines{"Start" + rest, "Finish" + rest}));
        return {lines.begin() + 1, lines.end() - 1};
    }
    /// Lets the database refuse updates "ON <table>" or "OF <column> ON <table>" until AllowUpdates.
    void RefuseUpdates(const std::string& where) {
        Sql("CREATE TRIGGER refusing BEFORE UPDATE " + where + " BEGIN SELECT RAISE(ABORT, 'in use'); END");
    }
    void AllowUpdates() { Sql("DROP TRIGGER refusing"); }
    bool WorkingFolderIsGone() const { return !std::filesystem::exists(Path("Temp/~suz")); }
};

/// For twin steps: the parameter is the type of the company that runs one of them.
class TwinsTest : public ChangesTest, public ::testing::WithParamInterface<int> {
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
