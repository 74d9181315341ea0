#include "agent/agent_test.h"
#include "agent/pipelines.h"
#include "agent/stop_request.h"

namespace qndr::testing {
namespace {

using PipelinesTest = AgentTest;

// The steps of these tests leave their marks in the activity, where a step may write.
void First(AgentContext&, ActivityTarget* activity) {
    activity->SetText("first");
}
void Asking(AgentContext& context, ActivityTarget* activity) {
    activity->SetText("asking");
    RequestStopSync(context);
}
void Failing(AgentContext&, ActivityTarget* activity) {
    activity->SetText("failing");
    throw services::Failure("broken");
}
void Last(AgentContext&, ActivityTarget* activity) {
    activity->SetText("last");
}

TEST_F(PipelinesTest, StepsStandInTheirOrder) {
    const auto names = [](std::span<const PipelineStep> steps) {
        Lines found;
        for (const PipelineStep& step : steps) {
            found.emplace_back(step.name);
        }
        return found;
    };
    const auto standInOrder = [](const Lines& some, const Lines& all) {
        auto place = all.begin();
        for (const std::string& name : some) {
            place = std::find(place, all.end(), name);
            if (place == all.end()) {
                return false;
            }
            ++place;
        }
        return !some.empty();
    };
    EXPECT_TRUE(standInOrder(names(MainSteps()),
                             {"ReceiveInitialSyncRequests", "SendInitialSyncs", "ReceiveInitialSyncAcknowledges",
                              "CheckForSyncResets", "ProcessPendingSyncResets",
                              "ApplyChangesFromRoamingWorkstations", "SendChangesToRoamingWorkstations"}));
    EXPECT_TRUE(standInOrder(names(RoamingSteps()),
                             {"SendInitialSyncRequest", "ReceiveInitialSync", "SendSyncResetToMain",
                              "SendOrderNumberSyncs", "ApplyChangesFromMain", "SendChangesToMain"}));
}

TEST_F(PipelinesTest, StopRequestIsTestedBehindEachStep) {
    const PipelineStep steps[] = {{"First", First}, {"Failing", Failing}, {"Asking", Asking}, {"Last", Last}};
    EXPECT_FALSE(RunSteps(context, steps, &activity));
    EXPECT_EQ(activity.texts, (Lines{"first", "failing", "asking"}));

    // The request stands: the first step runs all the same.
    activity.texts.clear();
    EXPECT_FALSE(RunSteps(context, steps, &activity));
    EXPECT_EQ(activity.texts, Lines{"first"});

    SetNumber(settings::StopSync, 0);
    activity.texts.clear();
    const PipelineStep quiet[] = {{"First", First}, {"Last", Last}};
    EXPECT_TRUE(RunSteps(context, quiet, &activity));
    EXPECT_EQ(activity.texts, (Lines{"first", "last"}));

    // A request that cannot be read counts as one.
    activity.texts.clear();
    gate.Refuse("RegistryTools.GetLong", 1);
    EXPECT_FALSE(RunSteps(context, quiet, &activity));
    EXPECT_EQ(activity.texts, Lines{"first"});
}

TEST_F(PipelinesTest, PipelineOfTheOtherRoleDoesNothing) {
    Open(AddMain("a"));
    SyncAsRoaming(context, &activity);
    Open(AddCompany("b", 2));
    SyncAsMain(context, &activity);
    Open(AddCompany("c", 0));
    SyncAsMain(context, &activity);
    SyncAsRoaming(context, &activity);
    EXPECT_EQ(context.MainUniqueID + context.RoamingUniqueID, "");
    EXPECT_EQ(gate.Count("Database.ExecuteScaler"), 4);

    // A type that cannot be read lets the steps run.
    gate.Refuse("Database.ExecuteScaler", 1);
    SyncAsRoaming(context, &activity);
    EXPECT_NE(context.RoamingUniqueID, "");
}

TEST_F(PipelinesTest, IdsAreReadOnceInTheLifeOfTheProcess) {
    Open(AddMain("a"));
    gate.Refuse("Database.ExecuteScaler", 2);
    SyncAsMain(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, "");
    SyncAsMain(context, nullptr);
    const std::string first = context.Database().ExecuteScaler("SELECT UniqueID FROM Company").ToText();
    EXPECT_EQ(context.MainUniqueID, first);
    Open(AddMain("b"));
    SyncAsMain(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, first);

    Open(AddCompany("c", 2));
    context.Database().ExecuteNonQuery("UPDATE Company SET MainUniqueID = 'MAIN'");
    SyncAsRoaming(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, first);
    EXPECT_EQ(context.RoamingUniqueID, context.Database().ExecuteScaler("SELECT UniqueID FROM Company").ToText());
    context.MainUniqueID = "";
    SyncAsRoaming(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, "MAIN");
}

} // namespace
} // namespace qndr::testing
