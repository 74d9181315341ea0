#include "standing/mending.h"
#include "standing/verdict.h"

#include <gtest/gtest.h>

namespace qndr::standing {
namespace {

Message At(int state, std::int64_t nextTo, std::int64_t nextFrom) {
    Message message;
    message.position.state = state;
    message.position.nextTo = nextTo;
    message.position.nextFrom = nextFrom;
    return message;
}

TEST(StepTrouble, IsFoundOnlyWhereNothingCanGoOn) {
    struct Case {
        const char* what;
        Message own;
        Message main;
        std::vector<std::int64_t> toMain;
        std::vector<std::int64_t> toWorkstation;
        const char* kind;
        Remedy remedy;
    };
    const auto none = Remedy::None;
    const std::vector<Case> cases{
        {"all was taken", At(4, 3, 5), At(4, 5, 3), {}, {}, "", none},
        {"files lie there", At(4, 4, 5), At(4, 6, 3), {3}, {5}, "", none},
        {"main's file is gone", At(4, 3, 5), At(4, 7, 3), {}, {6}, "sequence-lost", Remedy::Reset},
        {"a file to main is gone", At(4, 5, 5), At(4, 5, 3), {4}, {}, "sequence-lost", Remedy::Reset},
        {"main is an older copy", At(4, 3, 5), At(4, 4, 3), {}, {}, "sequence-ahead", Remedy::Reset},
        {"the workstation is", At(4, 2, 5), At(4, 5, 3), {}, {}, "sequence-ahead", Remedy::Reset},
        {"the request lies there", At(2, 0, 0), At(0, 0, 0), {-98}, {}, "", none},
        {"the request is gone", At(2, 0, 0), At(0, 0, 0), {}, {}, "lost-request", Remedy::InitialSync},
        {"main owes the data", At(2, 0, 0), At(1, 0, 0), {}, {}, "", none},
        {"the data lie there", At(2, 0, 0), At(3, 0, 0), {}, {-101}, "", none},
        {"the data are gone", At(2, 0, 0), At(3, 0, 0), {}, {}, "lost-initial-sync", Remedy::InitialSync},
        {"the acknowledge lies there", At(4, 0, 0), At(3, 0, 0), {-104}, {}, "", none},
        {"the acknowledge is gone", At(4, 0, 0), At(3, 0, 0), {}, {}, "lost-acknowledge", Remedy::InitialSync},
        {"a reset is asked for", At(6, 0, 0), At(4, 9, 9), {-1}, {}, "", none},
        {"main drains", At(6, 0, 0), At(6, 0, 0), {}, {}, "", none},
        {"the reset's data lie there", At(6, 0, 0), At(4, 1, 0), {}, {0}, "", none},
        {"an old file took their number", At(6, 0, 1), At(4, 1, 0), {}, {0}, "lost-reset", Remedy::Reset},
        {"the reset's data are gone", At(6, 0, 0), At(4, 1, 0), {}, {}, "lost-reset", Remedy::Reset},
        {"main has no pairing ready for it", At(6, 0, 0), At(3, 1, 0), {}, {}, "lost-reset", Remedy::InitialSync},
        {"a person's reset is about to go", At(5, 3, 5), At(4, 7, 3), {}, {}, "", none},
    };
    for (Case test : cases) {
        SCOPED_TRACE(test.what);
        test.own.filesTo = test.main.filesFrom = test.toMain;
        test.own.filesFrom = test.main.filesTo = test.toWorkstation;
        const StepTrouble trouble = FindStepTrouble(test.own, test.main);
        EXPECT_EQ(trouble.kind, test.kind);
        EXPECT_EQ(trouble.remedy, test.remedy);
        EXPECT_TRUE(trouble.isCertain);
    }
    Message own = At(4, 3, 5);
    Message main = At(4, 6, 3);
    main.filesTo = {5};
    EXPECT_FALSE(FindStepTrouble(own, main).isCertain) << "its sender still sees it";
}

TEST(StandingVerdict, SaysTheSameOnlyWhereThatIsKnown) {
    Message partner = At(4, 5, 3);
    Outlook outlook;
    outlook.own = At(4, 3, 5);
    EXPECT_EQ(Judge(outlook).health, Health::Unknown) << "it never spoke";
    outlook.partner = &partner;
    EXPECT_EQ(Judge(outlook).text, "in step, and not proven yet");
    outlook.provenOn = "20261123 10:05:00";
    EXPECT_EQ(Judge(outlook).text, "the same as of 2026-11-23 10:05 UTC");
    EXPECT_EQ(Judge(outlook).health, Health::Same);

    outlook.own.position.waiting = 3;
    outlook.own.position.waitingSince = "20261123 09:10:00";
    EXPECT_EQ(Judge(outlook).text, "3 changes behind since 2026-11-23 09:10 UTC");
    outlook.own.position.waiting = 0;
    outlook.own.position.nextTo = 4;
    outlook.own.filesTo = partner.filesFrom = {3};
    EXPECT_EQ(Judge(outlook).text, "1 file under way");
    outlook.own.filesTo = partner.filesFrom = {};
    EXPECT_EQ(Judge(outlook).text, "1 file under way") << "a message may not be the newest";
    outlook.lasting = "the file 3 to main was lost";
    outlook.mendsOn = "20261123 11:00:00";
    EXPECT_EQ(Judge(outlook).text,
              "out of step: the file 3 to main was lost, mends itself at 2026-11-23 11:00 UTC");
    EXPECT_EQ(Judge(outlook).health, Health::OutOfStep);
    outlook.own.position.nextTo = 3;
    outlook.silentMinutes = 600;
    EXPECT_EQ(Judge(outlook).health, Health::Unknown);
    outlook.isTwice = true;
    EXPECT_EQ(Judge(outlook).kind, "twins");
}

} // namespace
} // namespace qndr::standing
