#include "suite/files/command_line.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace qndr::suite {
namespace {

const std::vector<std::string> kNames{"AllowMany", "Profile", "Companies"};

TEST(CommandLine, ReadsEveryFormOfASwitch) {
    SwitchReader line(kNames);
    for (const auto& [text, value] :
         {std::pair("/Companies /srv/psd", "/srv/psd"),
          {"-COMPANIES=/srv/psd", "/srv/psd"},
          {"--companies \"/srv/psd\"", "/srv/psd"},
          {"x /AllowMany /companies:/srv/psd y /Companies second", "/srv/psd"},
          {"/Companies=\"C:\\My \"\"own\"\" files=1\" --unknown /x", "C:\\My \"own\" files=1"},
          {"/Companies /AllowMany", "none"},
          {"/Companies= Dealer /Companies/x \"/Companies", "none"}}) {
        line.SetCommandLine(text);
        EXPECT_TRUE(line.SwitchExists("Companies")) << text;
        EXPECT_EQ(line.GetSwitchValue("companies", "none"), value) << text;
        EXPECT_FALSE(line.SwitchExists("Profile") || line.SwitchExists("unknown")) << text;
    }
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
