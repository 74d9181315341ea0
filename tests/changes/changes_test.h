#pragma once

#include "support/agent_bench.h"

namespace qndr::testing {

inline const std::string OtherID = "CCCCCCCC-0000-4000-8000-000000000003";

using Step = void (*)(AgentContext&, ActivityTarget*);

/// A company whose audit log the test writes itself.
class ChangesTest : public AgentBench {
  protected:
    void Audit(const std::string& table, int recordId, int type, const std::string& data = "") {
        Sql("INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData) VALUES ('" +
            table + "', " + std::to_string(recordId) + ", " + std::to_string(type) + ", '20261122 10:00:00', 'U" +
            std::to_string(recordId) + "', '" + data + "')");
    }
    /// What a step logs.
    Lines Run(Step step) {
        TakeLog();
        step(context, &activity);
        return TakeLog();
    }
    /// What a step of main logs for one workstation, between the lines that say what it is doing.
    Lines RunForOne(Step step, const std::string& doing) {
        Lines lines = Run(step);
        const std::string rest = " " + doing + " roaming workstation 'Laptop'.";
        EXPECT_EQ((Lines{lines.front(), lines.back()}), (Lines{"Start" + rest, "Finish" + rest}));
        return {lines.begin() + 1, lines.end() - 1};
    }
    /// The events and their numbers.
    std::string Events() {
        return Value("SELECT group_concat(EventText || coalesce('/' || EventNumber, ''), '|') FROM CompanyEvents");
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
