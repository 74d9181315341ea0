#include "services/failure.h"
#include "suite/files/ini_files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace qndr::suite {
namespace {

using test::TemporaryFolder;

TEST(IniFiles, KeepTheOrderInWhichKeysWereFirstSet) {
    const TemporaryFolder folder;
    DiskIniTools ini;
    const std::string path = folder / "id.dat";
    for (const auto& [key, value] :
         {std::pair("Sequence", "-1"), {"From", " {A-Ü} "}, {"FromAppVersion", ""}, {"sequence", "7"}}) {
        ini.SetValue("GENERAL", key, value, path);
    }
    EXPECT_EQ(ini.GetValue("GENERAL", "FromAppVersion", "x", path), "");
    EXPECT_EQ(ini.GetValue("OTHER", "From", "x", path), "x");
    EXPECT_EQ(ini.GetValue("GENERAL", "From", "x", folder / "absent"), "x");
    std::string text = folder.Read("id.dat");
    std::erase(text, '\r');
    EXPECT_NE(text.find("Sequence=7\nFrom={A-Ü}\nFromAppVersion=\n"), std::string::npos) << text;
}

TEST(IniFiles, TakeWhatOtherProgramsWrite) {
    const TemporaryFolder folder;
    DiskIniTools ini;
    const std::string path =
        folder.Write("a.psd", "\xEF\xBB\xBF; made by hand\r\n[Company]\r\nName = A=B ; c \r\r"
                              "Twice=1\nTWICE=2\nnonsense\n[[odd\n=x\nText=<<<END\nLast=\"q\"");
    EXPECT_EQ(ini.GetValue("COMPANY", "name", "", path), "A=B ; c");
    EXPECT_EQ(ini.GetValue("COMPANY", "Twice", "", path), "2");
    const std::string lines = folder.Write("b", "[G]\nText=<<<END\nLast=\"q\"");
    EXPECT_EQ(ini.GetValue("G", "Text", "", lines), "<<<END");
    EXPECT_EQ(ini.GetValue("G", "Last", "", lines), "\"q\"");
}

TEST(IniFiles, AreLeftAloneWhenTheyAreNone) {
    const TemporaryFolder folder;
    DiskIniTools ini;
    const std::string start = "[G]\nA=1\n";
    const std::string allowed = folder.Write("allowed", start + std::string(1024 * 1024 - start.size(), ';'));
    EXPECT_EQ(ini.GetValue("G", "A", "x", allowed), "1");
    for (const std::string& path :
         {folder.Write("large", folder.Read("allowed") + ";"),
          folder.Write("binary", start + std::string("\0B=2", 4)), folder.Path(), folder / "absent/a"}) {
        EXPECT_EQ(ini.GetValue("G", "A", "x", path), "x") << path;
        EXPECT_THROW(ini.SetValue("G", "A", "2", path), services::Failure) << path;
    }
    EXPECT_THROW(ini.SetValue("G", "A", "2\r\nSequence=9", folder.Write("good", start)), services::Failure);
    EXPECT_EQ(folder.Read("good"), start);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"allowed", "binary", "good", "large"}));
}

} // namespace
} // namespace qndr::suite
