#include "shared/records.h"

#include "services/failure.h"

#include <gtest/gtest.h>

#include <map>

namespace qndr::testing {
namespace {

struct Column : services::Node {
    explicit Column(std::string content) : value(std::move(content)) {}
    std::unique_ptr<services::Node> selectSingleNode(const std::string&) const override { return nullptr; }
    std::string text() const override { return value; }
    std::string value;
};

struct Row : services::Node {
    std::unique_ptr<services::Node> selectSingleNode(const std::string& name) const override {
        if (name == "Broken") {
            throw services::Failure("broken");
        }
        const auto found = columns.find(name);
        return found == columns.end() ? nullptr : std::make_unique<Column>(found->second);
    }
    std::string text() const override { return ""; }
    std::map<std::string, std::string> columns;
};

TEST(Records, TextFallsBackToTheDefault) {
    Row row;
    row.columns = {{"Name", " Acme "}, {"Empty", ""}, {"Notes", "a&#13;&#10;b&#10;&#1;3;"}};
    EXPECT_EQ(GetNodeText("Name", &row, "x"), " Acme ");
    EXPECT_EQ(GetNodeString("Notes", &row, "x"), "a\r\nb\n&#1;3;");
    for (const char* name : {"Empty", "Missing", "Broken"}) {
        EXPECT_EQ(GetNodeText(name, &row, "x"), "x") << name;
        EXPECT_EQ(GetNodeLong(name, &row, 7), 7) << name;
    }
    EXPECT_EQ(GetNodeText("Name", nullptr, "x"), "x");
    EXPECT_EQ(GetNodeInteger("Name", nullptr, -7), -7);
}

TEST(Records, NumbersThatDoNotFitAreZeroAndWordsTheDefault) {
    struct Case {
        const char* text;
        std::int32_t asLong;
        std::int16_t asInteger;
    };
    for (const Case& each :
         {Case{"12", 12, 12}, Case{" -12 ", -12, -12}, Case{"word", 7, 7}, Case{"12a", 7, 7},
          Case{"1e3", 1000, 1000}, Case{"32767", 32767, 32767}, Case{"32768", 32768, 0},
          Case{"2147483647", 2147483647, 0}, Case{"2147483648", 0, 0}, Case{"12345678901", 0, 0},
          Case{"2.5", 2, 2}, Case{"3.5", 4, 4}, Case{"-2.5", -2, -2}, Case{"2.51", 3, 3}}) {
        Row row;
        row.columns["N"] = each.text;
        EXPECT_EQ(GetNodeLong("N", &row, 7), each.asLong) << each.text;
        EXPECT_EQ(GetNodeInteger("N", &row, 7), each.asInteger) << each.text;
    }
}

TEST(Records, IdentitiesAreComparedInOneForm) {
    EXPECT_EQ(NormalizeUniqueID(" { ab}-{12 }{"), "AB-12");
    EXPECT_EQ(NormalizeUniqueID(""), "");
    EXPECT_TRUE(EqualIdentities("AB-12", "ab-12"));
    EXPECT_FALSE(EqualIdentities("AB-12", "{ab-12}"));
}

} // namespace
} // namespace qndr::testing
