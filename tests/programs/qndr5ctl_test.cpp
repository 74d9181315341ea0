#include "programs/qndr5ctl/log_tail.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl_fixture.h"
#include "text/json.h"

namespace qndr::control {
namespace {

TEST_F(Qndr5ctl, SetsUpACompanyAndItsWorkstation) {
    const std::string main = NewCompany("Müller & Söhne", "main", {"--sample", "120"});
    const std::string laptop = NewCompany("Laptop \"1\"", "roaming");
    MustFail({"company", "create", main, "--type", "main", "--name", "Again"}, "Müller");
    MustFail({"workstation", "add", laptop, main}, "main company");
    MustFail({"workstation", "list", laptop}, "is no main company");

    MustRun({"workstation", "add", main, laptop, "--reference-code", "7"});
    MustFail({"workstation", "add", main, laptop}, "already");

    const std::string shown = MustRun({"company", "show", laptop, "--json"});
    EXPECT_EQ(JsonAt(shown, "$.name"), "Laptop \"1\"");
    EXPECT_EQ(JsonAt(shown, "$.state"), "1");
    EXPECT_EQ(JsonAt(shown, "$.stateText"), "initial sync required");
    EXPECT_EQ(JsonAt(shown, "$.waitingChanges"), "0");
    const std::string listed = MustRun({"workstation", "list", main, "--json"});
    EXPECT_EQ(JsonAt(listed, "$[0].referenceCode"), "7");
    EXPECT_EQ(JsonAt(listed, "$[0].uniqueID"), JsonAt(shown, "$.uniqueID"));
    EXPECT_EQ(JsonAt(listed, "$[0].waitingChanges"),
              JsonAt(MustRun({"company", "show", main, "--json"}), "$.newestAuditID"));
    EXPECT_GT(std::stoi(JsonAt(listed, "$[0].waitingChanges")), 100);

    OnDatabase("Müller & Söhne", "UPDATE RoamingWorkstations SET SyncState = 4, LastSentTo = '20261122 19:08:52'");
    const std::string table = MustRun({"workstation", "list", main});
    EXPECT_NE(table.find("4 (ready)"), std::string::npos) << table;
    EXPECT_NE(table.find("2026-11-22 19:08:52"), std::string::npos) << table;
}

TEST_F(Qndr5ctl, ComparesCompaniesByTheirRows) {
    const std::string main = NewCompany("Main", "main", {"--sample", "80"});
    const std::string empty = NewCompany("Empty", "main");
    EXPECT_EQ(JsonAt(MustRun({"company", "compare", main, main, "--all", "--json"}), "$.alike"), "1");
    MustFail({"company", "compare", main, empty}, "the companies differ in");
    const Outcome differing = Run({"company", "compare", empty, main, "--json"});
    EXPECT_EQ(differing.status, 1);
    EXPECT_EQ(JsonAt(differing.out, "$.alike"), "0");
    EXPECT_EQ(JsonAt(differing.out, "$.tables[0].onlyLeft"), "0");
    EXPECT_NE(JsonAt(differing.out, "$.tables[0].onlyRight"), "0");
}

TEST_F(Qndr5ctl, TellsWhatIsWrongWithACompanyFile) {
    Write("binary.psd", std::string("\0\1\2\3", 4));
    Write("nameless.psd", "[COMPANY]\nName=Nothing\n");
    Write("gone.psd", "[COMPANY]\nConnectionString=Provider=SQLite;Data Source=gone.db\n");
    Write("text.psd", "[COMPANY]\nConnectionString=Provider=SQLite;Data Source=nameless.psd\n");
    Write("odd.psd", "[COMPANY]\nConnectionString=Driver={Other}\n");
    Write("other.psd", "[COMPANY]\nConnectionString=Provider=SQLite;Data Source=other.db\n");
    OnDatabase("other", "CREATE TABLE Company (ID INTEGER)");

    for (const std::vector<std::string>& command : {std::vector<std::string>{"company", "show"},
                                                    {"workstation", "list"},
                                                    {"events"},
                                                    {"sync", "request-reset"}}) {
        const auto fails = [&](const std::string& name, const std::string& reason) {
            auto arguments = command;
            arguments.push_back(File(name));
            MustFail(arguments, reason);
        };
        fails("absent.psd", "there is no file");
        fails("binary.psd", "is no company file");
        fails("nameless.psd", "is no company file");
        fails("gone.psd", "cannot be opened");
        fails("text.psd", "cannot be opened");
        fails("odd.psd", "cannot be opened");
        fails("other.psd", "is no company");
    }
    EXPECT_FALSE(fs::exists(File("gone.db")));
}

TEST_F(Qndr5ctl, RefusesCommandLinesThatItCannotUnderstand) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{},
          {"fly"},
          {"company"},
          {"company", "show"},
          {"company", "create", File("a.psd"), "--type", "boss", "--name", "A"},
          {"company", "create", File("a.psd"), "--type", "main", "--name", "A", "--seed", "3"},
          {"workstation", "add", "a.psd", "b.psd", "--reference-code", "256"},
          {"log", "--follow", "--json"},
          {"role", "both"}}) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 2) << testing::PrintToString(arguments);
        EXPECT_TRUE(outcome.errors.starts_with("qndr5ctl: ")) << outcome.errors;
    }
    EXPECT_NE(Run({"company", "shw", "a.psd"}).errors.find("'shw'"), std::string::npos);
    EXPECT_NE(MustRun({"company", "create", "--help"}).find("--sample"), std::string::npos);
    EXPECT_FALSE(fs::exists(File("a.psd")));
}

TEST_F(Qndr5ctl, AsksForAnInitialSyncWithBothEndsAlike) {
    const std::string main = NewCompany("Main", "main");
    const std::string laptop = NewCompany("Laptop", "roaming");
    MustRun({"workstation", "add", main, laptop});
    MustFail({"sync", "request-reset", laptop}, "ready");
    MustFail({"sync", "request-initial", main}, "is no Roaming Workstation company");
    MustRun({"sync", "request-initial", laptop});

    const std::string mainID = JsonAt(MustRun({"company", "show", main, "--json"}), "$.uniqueID");
    OnDatabase("Laptop",
               "UPDATE Company SET SyncState = 4, NextSequenceToMain = 5, MainUniqueID = '" + mainID + "'");
    OnDatabase("Main", "UPDATE RoamingWorkstations SET SyncState = 4, NextSequenceToRoaming = 9,"
                       " NextSequenceFromRoaming = 5");
    MustFail({"sync", "request-initial", laptop}, "--main");
    MustFail({"sync", "request-initial", laptop, "--main", NewCompany("Other", "main")}, "another main company");
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.state"), "4");

    MustRun({"sync", "request-reset", laptop});
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.stateText"), "Reset Requested");
    MustRun({"sync", "request-initial", laptop, "--main", main});
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.state"), "1");
    const std::string listed = MustRun({"workstation", "list", main, "--json"});
    EXPECT_EQ(JsonAt(listed, "$[0].nextSequenceToRoaming"), "0");
    EXPECT_EQ(JsonAt(listed, "$[0].nextSequenceFromRoaming"), "0");
}

TEST_F(Qndr5ctl, AsksForAResetAndTellsHowFarItIs) {
    const std::string main = NewCompany("Main", "main");
    const std::string laptop = NewCompany("Laptop", "roaming");
    MustRun({"workstation", "add", main, laptop});
    const auto at = [&](const char* state) {
        OnDatabase("Laptop", std::string("UPDATE Company SET SyncState = ") + state);
    };
    for (const auto& [state, reason] : std::vector<std::pair<const char*, std::string>>{
             {"0", "never had"}, {"1", "under way"}, {"2", "under way"}, {"5", "already"}}) {
        at(state);
        MustFail({"sync", "request-reset", laptop, "--date", "2026-11-01"}, reason);
    }
    const std::vector<std::string> date{"option", "get", laptop, "Roaming Workstations", "ResetSyncDate"};
    EXPECT_EQ(Run(date).out.find("2026"), std::string::npos);
    EXPECT_EQ(Run({"sync", "request-reset", laptop, "--date", "2026-02-30"}).status, 2);
    at("6");
    OnDatabase("Laptop", "INSERT INTO CustomerTypes (UniqueID) VALUES ('A'), ('B'), ('C')");
    // Told before the deed, and nothing is done without a yes.
    EXPECT_NE(Run({"sync", "request-reset", laptop, "--date", "11/1/2026"}).out.find("gives up 3 changes"),
              std::string::npos);
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.state") +
                  JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.givenUpChanges"),
              "63");
    MustRun({"sync", "request-reset", laptop, "--yes"});
    MustRun({"sync", "cancel-reset", laptop});
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.state"), "6") << "where it stood before";
    MustFail({"sync", "cancel-reset", laptop}, "has left");
    MustRun({"sync", "request-reset", laptop, "--date", "11/1/2026", "--yes"});
    EXPECT_NE(MustRun({"conflicts", "list", laptop}).find("given up by a reset"), std::string::npos);
    EXPECT_NE(MustRun(date).find("2026-11-01 00:00:00"), std::string::npos);
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.state"), "5");
    at("4");
    OnDatabase("Laptop", "UPDATE Company SET LastAuditID = 3");
    OnDatabase("Laptop", "UPDATE GivenUpMark SET AuditID = 3");
    OnDatabase("Laptop", "DELETE FROM GivenUpChanges");
    MustRun({"sync", "request-reset", laptop});
    OnDatabase("Laptop", "UPDATE Company SET NextSequenceFromMain = 3");
    MustFail({"sync", "cancel-reset", laptop}, "takes its course");
    at("6");
    EXPECT_NE(MustRun({"company", "show", laptop}).find("awaits the full data"), std::string::npos);

    const auto listed = [&](const std::string& row) {
        OnDatabase("Main", "UPDATE RoamingWorkstations SET " + row);
        const std::string words = JsonAt(MustRun({"workstation", "list", main, "--json"}), "$[0].stateText");
        EXPECT_EQ(JsonAt(MustRun({"company", "show", main, "--json"}), "$.resets[0].stateText"), words);
        return words;
    };
    const std::string waits = "reset pending, waiting for five quiet minutes";
    EXPECT_EQ(listed("SyncState = 6"), waits);
    EXPECT_EQ(listed("LastReceivedFrom = '20261122 10:42:07'"), waits + " since 10:42:07 UTC");
    EXPECT_EQ(listed("LastReceivedFrom = '20261121 10:42:07'"), waits + " since 2026-11-21 10:42:07 UTC");
    EXPECT_EQ(listed("SyncState = 5"), "Reset Requested, owes the full data");

    const auto heartbeat = [&](const std::string& name, const std::string& value) {
        MustRun({"settings", "set", name, value});
        const std::string words = JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.heartbeat");
        EXPECT_NE(MustRun({"workstation", "list", main}).find("computer: " + words + "\n"), std::string::npos);
        return words;
    };
    EXPECT_EQ(heartbeat("SyncHeartbeat", "0"), "pending");
    EXPECT_EQ(heartbeat("SyncHeartbeat", "1"), "OK");
    EXPECT_EQ(heartbeat("SyncHeartbeat", "2"), "no response from main");
    EXPECT_EQ(heartbeat("EnableHeartbeat", "0"), "N/A");
}

TEST_F(Qndr5ctl, ReadsAndWritesSettingsWithoutMakingThemByLooking) {
    EXPECT_EQ(MustRun({"settings", "get", "syncfrequency"}), "5\n");
    MustRun({"settings", "list"});
    MustRun({"location", "list"});
    EXPECT_EQ(FilesInHome(), 0U);

    MustFail({"settings", "set", "SyncFrequency", "61"}, "1 to 60");
    MustFail({"settings", "set", "SyncFrequency", "5x"}, "number");
    MustFail({"settings", "set", "NextSync", "2026-02-30"}, "date");
    MustFail({"settings", "set", "SyncFrequncy", "5"}, "did you mean 'SyncFrequency'?");
    MustRun({"settings", "set", "SyncFrequency", "15"});
    MustRun({"stop"});
    MustRun({"settings", "set", "Note", "a \"b\"\n", "--key", "Software\\Else"});
    const std::string listed = MustRun({"settings", "list", "--json"});
    EXPECT_EQ(JsonAt(listed, "$[0].value"), "15");
    EXPECT_EQ(JsonAt(listed, "$[1].value"), "");
    EXPECT_EQ(MustRun({"settings", "get", "StopSync"}), "1\n");
    EXPECT_EQ(JsonAt(MustRun({"settings", "get", "Note", "--key", "software\\else", "--json"}), "$.value"),
              "a \"b\"\n");
    MustFail({"settings", "get", "Nothing", "--key", "Software\\Else"}, "no value");

    // The log would turn itself off behind the date of an earlier time.
    MustRun({"settings", "set", "DebugSyncAgentStartDate", "2020-01-01 00:00:00"});
    MustRun({"settings", "set", "DebugSyncAgent", "1"});
    EXPECT_EQ(MustRun({"settings", "get", "DebugSyncAgentStartDate"}), "2026-11-22 19:08:52\n");
    MustRun({"settings", "set", "DebugSyncAgent", "0"});
    EXPECT_EQ(MustRun({"settings", "get", "DebugSyncAgentStartDate"}), "\n");
}

TEST_F(Qndr5ctl, NamesFoldersRolesAndOptionsByProfile) {
    MustRun({"location", "set", "Sync", File("share")});
    MustRun({"location", "set", "sync", "relative/../here", "--profile", "Laptop"});
    fs::remove_all("here");
    MustFail({"location", "set", "Snc", File("share")}, "did you mean 'Sync'?");
    EXPECT_EQ(JsonAt(MustRun({"location", "list", "--json", "--profile", "Other"}), "$[1].folder"), File("share"));
    EXPECT_EQ(JsonAt(MustRun({"location", "list", "--json", "--profile", "Laptop"}), "$[1].folder"),
              (fs::current_path() / "here").string());
    EXPECT_EQ(MustRun({"role"}), "main (not set)\n");
    MustRun({"role", "roaming", "--profile", "Laptop"});
    EXPECT_EQ(MustRun({"role", "--profile", "Laptop"}), "roaming\n");
    const std::string key = "Software\\Velmoran\\Ordergrove Suite\\5.0\\Settings (Laptop)";
    EXPECT_EQ(MustRun({"settings", "get", "RoamingWorkstation", "--key", key}), "1\n");

    const std::string main = NewCompany("Main", "main");
    MustFail({"option", "get", main, "Roaming Workstations", "EnableSync"}, "is not set");
    MustFail({"option", "set", main, "Roaming Workstation", "EnableSync", "1"},
             "did you mean 'Roaming Workstations'?");
    MustFail({"option", "set", main, "Roaming Workstations", "EnabelSync", "1"}, "did you mean 'EnableSync'?");
    MustRun({"option", "set", main, "Roaming Workstations", "EnableSync", "1"});
    MustRun({"option", "set", main, "Roaming Workstations", "EnableSync", "0", "--profile", "Laptop"});
    EXPECT_EQ(MustRun({"option", "get", main, "roaming workstations", "enablesync"}), "1\n");
    EXPECT_EQ(MustRun({"option", "get", main, "Roaming Workstations", "EnableSync", "--profile", "Laptop"}),
              "0\n");
    EXPECT_EQ(JsonAt(MustRun({"company", "show", main, "--json"}), "$.enableSync"), "1");
}

TEST_F(Qndr5ctl, ShowsWhatASyncFileHolds) {
    Write("work/id.dat", "[GENERAL]\nSyncState=-2\nSequence=1e300\nFrom={AB}\nFuture=x\n");
    Write("work/data.xml",
          "<Exchange Version=\"1\"><Table Name=\"Customers\"><Record><UniqueID>1</UniqueID>"
          "<Record/></Record><Record/></Table><Table Name=\"Orders\" Deleted=\"1\"><Record/></Table>"
          "<Table Name=\"Customers\"><Record/></Table></Exchange>");
    Pack("work", "good.zip");
    const std::string shown = MustRun({"file", "show", File("good.zip"), "--json"});
    EXPECT_EQ(JsonAt(shown, "$.descriptor.SyncState"), "-2");
    EXPECT_EQ(JsonAt(shown, "$.descriptor.Future"), "x");
    EXPECT_EQ(JsonAt(shown, "$.tables[0].records"), "3");
    EXPECT_EQ(JsonAt(shown, "$.tables[1].table"), "Orders");
    EXPECT_EQ(JsonAt(shown, "$.tables[1].deletion"), "1");
    EXPECT_EQ(JsonAt(shown, "$.tables[2]"), "");
    EXPECT_NE(MustRun({"file", "show", File("good.zip")}).find("-2 (initial sync requested)"), std::string::npos);

    Write("plain/readme.txt", "");
    Pack("plain", "plain.zip");
    EXPECT_NE(MustRun({"file", "show", File("plain.zip")}).find("no descriptor"), std::string::npos);
    Write("work/data.xml", "<Exchange>");
    Pack("work", "damaged.zip");
    MustFail({"file", "show", File("damaged.zip")}, "damaged");
    MustFail({"file", "show", File("work/id.dat")}, "ZIP");
    MustFail({"file", "show", File("absent.zip")}, "ZIP");
}

TEST_F(Qndr5ctl, FollowsTheLogThroughItsFiles) {
    MustFail({"log"}, "there is no sync log");
    const std::string logs = "computer/CommonAppData/Velmoran/Logs/";
    Write(logs + "qndr5rwsync 1026.log", "one\r\ntwo\r\n");
    SetAge(logs + "qndr5rwsync 1026.log", 60);
    Write(logs + "qndr5rwsync 1126.log", "three \x01\xFF\r\n");
    Write(logs + "other 1126.log", "not ours\r\n");
    EXPECT_EQ(MustRun({"log", "--lines", "2"}), "two\nthree \x01\xFF\n");
    EXPECT_EQ(JsonAt(MustRun({"log", "--json"}), "$.lines[2]"), "three \x01\xEF\xBF\xBD");

    LogTail tail(File(logs), "qndr5rwsync");
    tail.LastLines(1);
    EXPECT_EQ(tail.Poll(), "");
    Write(logs + "qndr5rwsync 1126.log", "four\r\n");
    EXPECT_EQ(tail.Poll(), "four\r\n");
    Write(logs + "qndr5rwsync 1126.log", "five\r\n");
    fs::rename(File(logs + "qndr5rwsync 1126.log"), File(logs + "qndr5rwsync 1126 (11-22-2026 1910).log"));
    SetAge(logs + "qndr5rwsync 1126 (11-22-2026 1910).log", 30);
    Write(logs + "qndr5rwsync 1126.log", "six\r\n");
    EXPECT_EQ(tail.Poll(), "five\r\nsix\r\n");
    Write(logs + "qndr5rwsync 1126.log", "seven\r\n");
    SetAge(logs + "qndr5rwsync 1126.log", 20);
    Write(logs + "qndr5rwsync 1226.log", "eight\r\n");
    EXPECT_EQ(tail.Poll(), "seven\r\neight\r\n");
    EXPECT_EQ(tail.Poll(), "");
}

TEST(Qndr5ctlOutput, AlignsCharactersAndKeepsARowOnItsLine) {
    Listing listing({{"Name", "name"}, {"No", "no"}, {"", "hidden"}, {"Note", ""}});
    listing.Add({"Zoë", 7, true, "a\nb"});
    listing.Add({"Al", 1234, false, Json()});
    std::ostringstream out;
    listing.PrintTable(out, "none");
    EXPECT_EQ(out.str(), "Name    No  Note\nZoë      7  a b\nAl    1234  -\n");
    EXPECT_EQ(listing.ToJson().ToText(), R"([{"name": "Zoë", "no": 7, "hidden": true}, )"
                                         R"({"name": "Al", "no": 1234, "hidden": false}])");
}

} // namespace
} // namespace qndr::control
