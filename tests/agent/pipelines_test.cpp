#include "agent/pipelines.h"
#include "agent/stop_request.h"
#include "support/agent_bench.h"

#include <ranges>

namespace qndr::testing {
namespace {

using PipelinesTest = AgentBench;

/// Asks the agent to stop as soon as it shows a certain text.
struct StoppingActivity : ActivityLines {
    explicit StoppingActivity(AgentContext& context) : agent(context) {}
    void SetText(const std::string& text) override {
        ActivityLines::SetText(text);
        if (text == stopAt) {
            RequestStopSync(agent);
        }
    }
    AgentContext& agent;
    std::string stopAt;
};

TEST_F(PipelinesTest, CleanupsFollowUnlessTheLastStepIsAskedToStop) {
    const Lines cleanups{"Cleaning up temp files...", "Cleaning up sync backups...",
                         "Cleaning up order backups...", "Cleaning up delete sync files..."};
    OpenCompany(2);
    for (const std::string stopAt : {"none", "Sending changes to main.", "Cleaning up temp files..."}) {
        StoppingActivity stopping(context);
        stopping.stopAt = stopAt;
        SyncAsRoaming(context, &stopping);
        const bool isAsked = stopAt == "Sending changes to main.";
        EXPECT_TRUE(std::ranges::equal(stopping.texts | std::views::drop(6), isAsked ? Lines{} : cleanups))
            << stopAt;
        SetNumber(settings::StopSync, 0);
    }
}

TEST_F(PipelinesTest, StopRequestIsTestedBehindEachStep) {
    const PipelineStep first{"First", [](AgentContext&, ActivityTarget* target) { target->SetText("first"); }};
    const PipelineStep failing{"Failing",
                               [](AgentContext&, ActivityTarget*) { throw services::Failure("broken"); }};
    const PipelineStep asking{"Asking", [](AgentContext& agent, ActivityTarget*) { RequestStopSync(agent); }};
    const PipelineStep last{"Last", [](AgentContext&, ActivityTarget* target) { target->SetText("last"); }};
    const auto run = [&](std::initializer_list<PipelineStep> steps) {
        activity.texts.clear();
        return RunSteps(context, steps, &activity);
    };
    EXPECT_TRUE(run({first, failing, last}));
    EXPECT_EQ(activity.texts, (Lines{"first", "last"}));

    gate.Refuse(calls::RegistryTools::GetLong, 1);
    EXPECT_FALSE(run({first, last})) << "a request that cannot be read counts as one";
    EXPECT_EQ(activity.texts, Lines{"first"});

    EXPECT_FALSE(run({first, asking, last}));
    EXPECT_EQ(activity.texts, Lines{"first"});
    EXPECT_FALSE(run({last, first})) << "the request stands";
    EXPECT_EQ(activity.texts, Lines{"last"});
}

TEST_F(PipelinesTest, IdsAreReadOnceByThePipelineOfTheCompanysRole) {
    OpenCompany(1);
    gate.Refuse(calls::Database::ExecuteScaler, 2);
    SyncAsMain(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, "") << "a type that cannot be read lets the steps run, without an id";
    SyncAsRoaming(context, nullptr);
    EXPECT_EQ(context.RoamingUniqueID, "");
    SyncAsMain(context, nullptr);
    Sql("UPDATE Company SET UniqueID = 'OTHER', MainUniqueID = 'MAIN'");
    SyncAsMain(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, MainID);

    Sql("UPDATE Company SET CompanyType = 2");
    SyncAsRoaming(context, nullptr);
    EXPECT_EQ(context.RoamingUniqueID, "OTHER");
    EXPECT_EQ(context.MainUniqueID, MainID);
    context.MainUniqueID = "";
    SyncAsMain(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, "");
    SyncAsRoaming(context, nullptr);
    EXPECT_EQ(context.MainUniqueID, "MAIN");
}

} // namespace
} // namespace qndr::testing
