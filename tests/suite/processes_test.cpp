#include "suite/computer/system_facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/prctl.h>

namespace qndr::suite {
namespace {

TEST(SystemProcesses, NamesAreThoseOfTheProgramsThatRunNow) {
    char before[16] = "";
    ASSERT_EQ(prctl(PR_GET_NAME, before), 0);
    SystemProcesses processes;
    const auto runs = [&] { return std::ranges::count(processes.Names(), "Qndr5 (Own).exe") != 0; };
    EXPECT_FALSE(runs());
    prctl(PR_SET_NAME, "Qndr5 (Own).exe");
    EXPECT_TRUE(runs());
    prctl(PR_SET_NAME, before);
    EXPECT_FALSE(runs());
}

} // namespace
} // namespace qndr::suite
