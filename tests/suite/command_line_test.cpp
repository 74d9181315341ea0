#include "suite/files/command_line.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace qndr::suite {
namespace {

const std::vector<std::string> kNames{"AllowMany", "Profile", "Companies"};

TEST(CommandLine, ReadsEveryFormOfASwitch) {
    SwitchReader line(kNames);
    for (const char* text : {"/Companies /srv/psd", "/companies:/srv/psd", "-COMPANIES=/srv/psd",
                             "--companies \"/srv/psd\"", "x /AllowMany /Companies /srv/psd y /Companies second"}) {
        line.SetCommandLine(text);
        EXPECT_TRUE(line.SwitchExists("Companies")) << text;
        EXPECT_EQ(line.GetSwitchValue("companies", "none"), "/srv/psd") << text;
        EXPECT_FALSE(line.SwitchExists("Profile")) << text;
    }
    EXPECT_TRUE(line.SwitchExists("allowmany"));
    line.SetCommandLine("/Companies=\"C:\\My \"\"own\"\" files=1\" /Profile /AllowMany --unknown /x");
    EXPECT_EQ(line.GetSwitchValue("Companies", ""), "C:\\My \"own\" files=1");
    EXPECT_TRUE(line.SwitchExists("Profile"));
    EXPECT_EQ(line.GetSwitchValue("Profile", "none"), "none");
    EXPECT_FALSE(line.SwitchExists("unknown"));
    line.SetCommandLine("/Profile= Dealer /Companies/x \"/Companies");
    EXPECT_EQ(line.GetSwitchValue("Profile", "none"), "none");
    EXPECT_EQ(line.GetSwitchValue("Companies", "none"), "none");
    EXPECT_TRUE(line.SwitchExists("Companies"));
    line.SetCommandLine("");
    EXPECT_FALSE(line.SwitchExists("Companies"));
}

TEST(CommandLine, JoinedWordsSplitAgain) {
    const auto character = rc::gen::element('a', '"', ' ', '\t', '\\', '/', '=', '\n');
    const auto words = rc::gen::container<std::vector<std::string>>(rc::gen::container<std::string>(character));
    EXPECT_TRUE(rc::check([&] {
        const std::vector<std::string> given = *words;
        RC_ASSERT(SplitCommandLine(JoinCommandLine(given)) == given);
    }));
    const char* arguments[] = {"program", "/Companies", "/my psd", ""};
    EXPECT_EQ(SplitCommandLine(JoinCommandLine(4, arguments)),
              (std::vector<std::string>{"/Companies", "/my psd", ""}));
}

} // namespace
} // namespace qndr::suite
