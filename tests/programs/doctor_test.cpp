#include "programs/qndr5ctl/control_program.h"
#include "programs/qndr5ctl_fixture.h"
#include "suite/files/zip_archive.h"
#include "support/dealer.h"
#include "support/scripted_gate.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <utility>

namespace qndr::control {
namespace {

/// A dealer with two laptops, and the doctor called on the main computer.
class Doctor : public ::testing::Test {
  protected:
    Doctor() {
        dealer_.SetUp(20);
        Run({"location", "set", "Companies", dealer_.Main().Companies()});
    }

    Outcome Run(const std::vector<std::string>& arguments, services::CallGate* gate = nullptr) {
        const suite::Computer computer = suite::Computer::InFolder(folder_ / "main", "main");
        const ComputerServices outside(computer, {dealer_.Time(), dealer_.Time(), dealer_.Time()}, "qndr5ctl", {},
                                       gate);
        std::ostringstream out;
        std::ostringstream errors;
        Outcome outcome;
        outcome.status = RunControlProgram(arguments, {computer, outside.Services(), out}, errors);
        outcome.out = out.str();
        outcome.errors = errors.str();
        return outcome;
    }
    std::vector<std::string> WithAll(std::vector<std::string> more = {}) {
        std::vector<std::string> arguments{"doctor", "--sync", dealer_.SyncFolder(), "--companies",
                                           dealer_.Main().Companies()};
        for (std::size_t index = 0; index < 2; ++index) {
            arguments.insert(arguments.end(), {"--companies", dealer_.Laptop(index).Companies()});
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    /// Each finding as "code subject", one a line, and in `remedies_` what to do.
    std::string Troubles(std::vector<std::string> arguments, services::CallGate* gate = nullptr) {
        arguments.emplace_back("--json");
        const Outcome outcome = Run(arguments, gate);
        const suite::SqliteConnection parser(folder_ / "json.db", dealer_.Time(),
                                             suite::SqliteConnection::Missing::Create);
        auto row = parser.Prepare("SELECT ifnull(group_concat(json_extract(value, '$.code') || ' ' ||"
                                  " json_extract(value, '$.subject'), char(10)), ''),"
                                  " ifnull(group_concat(json_extract(value, '$.remedy'), char(10)), '')"
                                  " FROM json_each(?1, '$.findings')");
        row.Bind(1, outcome.out);
        row.Step();
        const std::string troubles(row.Text(0));
        remedies_ = row.Text(1);
        EXPECT_EQ(outcome.status, troubles.empty() ? 0 : 1) << outcome.out << outcome.errors;
        return troubles;
    }

    void BringToNormalRunning() {
        for (int round = 0; round < 2; ++round) {
            dealer_.RunRound();
        }
        ASSERT_EQ(dealer_.RowState(dealer_.Laptop(1)), 4);
    }
    void Change(const testing::DealerComputer& computer, const std::string& name) const {
        computer.Open()->Execute("INSERT INTO CustomerTypes (UniqueID, Name) VALUES ('" + name + "', '" + name +
                                 "')");
    }
    /// Puts a file of a descriptor into the Sync folder and gives its name.
    std::string Drop(const std::string& to, const std::string& from, const std::string& keys) const {
        const std::string name = to + "~x" + std::to_string(fs::file_size(folder_.Write("count", from + keys))) +
                                 "~20261122T135900.zip";
        fs::remove_all(folder_ / "packed");
        folder_.Write("packed/id.dat", "[GENERAL]\r\nFrom=" + from + "\r\n" + keys + "\r\n");
        suite::LibZipArchive zip;
        EXPECT_EQ(zip.NewZip(dealer_.SyncFolder() + "/" + name), 1);
        EXPECT_EQ(zip.AppendFiles(folder_ / "packed/*.*", 1), 1);
        EXPECT_EQ(zip.WriteZipAndClose(), 1);
        return name;
    }

    struct Planted {
        std::string trouble;
        std::string remedy;
        std::function<void()> plant;
        std::function<void()> takeBack;
    };
    /// Each trouble by itself is named, with its remedy, and nothing else is.
    void Check(const std::vector<Planted>& all, const std::vector<std::string>& arguments) {
        for (const Planted& each : all) {
            each.plant();
            EXPECT_EQ(Troubles(arguments), each.trouble);
            EXPECT_NE(remedies_.find(each.remedy), std::string::npos) << each.trouble << " / " << remedies_;
            each.takeBack();
        }
        EXPECT_EQ(Troubles(arguments), "");
    }
    std::function<void()> OnMain(const std::string& statement) const {
        return [this, statement] { dealer_.Main().Open()->Execute(statement); };
    }
    std::function<void()> OnLaptop(const std::string& statement) const {
        return [this, statement] { dealer_.Laptop().Open()->Execute(statement); };
    }
    std::function<void()> OnRow(const std::string& change) const {
        return OnMain("UPDATE RoamingWorkstations SET " + change + " WHERE Name = 'laptop-1'");
    }
    std::function<void()> OnRegistry(const std::vector<std::string>& command) {
        return [this, command] { EXPECT_EQ(Run(command).status, 0); };
    }
    std::function<void()> Without(const std::string& name) const {
        return [this, name] { fs::remove(dealer_.SyncFolder() + "/" + name); };
    }
    std::string Psd() const { return dealer_.Laptop().Psd(); }

    const test::TemporaryFolder folder_{test::QuickPlace()};
    testing::Dealer dealer_{folder_.Path(), 2};
    std::string remedies_;
};

TEST_F(Doctor, NamesNothingAtAnyMomentOfAnExchange) {
    const auto isHealthy = [&](const std::string& when) {
        EXPECT_EQ(Troubles(WithAll()), "") << when;
        for (const auto* computer : {&dealer_.Main(), &dealer_.Laptop(1)}) {
            EXPECT_EQ(Troubles({"doctor", "--sync", dealer_.SyncFolder(), "--companies", computer->Companies()}),
                      "")
                << when << ", with " << computer->Name() << " alone";
        }
    };
    isHealthy("before the first pass");
    for (int round = 0; round < 8; ++round) {
        for (const auto* computer : {&dealer_.Laptop(0), &dealer_.Laptop(1), &dealer_.Main()}) {
            // A reset would keep what it gives up, which is for a person to look at.
            if (round == 2 || (round <= 4 && round > 2 && computer != &dealer_.Laptop(1))) {
                Change(*computer, computer->Name() + std::to_string(round));
            }
            if (round == 4 && computer == &dealer_.Laptop(1)) {
                EXPECT_EQ(Run({"sync", "request-reset", computer->Psd()}).status, 0);
            }
            computer->RunPass();
            isHealthy("round " + std::to_string(round) + ", behind " + computer->Name());
        }
        dealer_.Time().Advance(round == 5 ? 400'000 : 60'000);
    }
    EXPECT_EQ(dealer_.Laptop(1).SyncState(), 4);
    EXPECT_EQ(dealer_.RowState(dealer_.Laptop(1)), 4);

    const std::vector<std::string> before = folder_.Names("sync");
    const Outcome well = Run(WithAll());
    EXPECT_EQ(well.out + well.errors,
              "All is well: companies asked 3, files in the Sync folder " + std::to_string(before.size()) + ".\n");
    EXPECT_EQ(folder_.Names("sync"), before);
    EXPECT_EQ(Run({"doctor", "--days", "0"}).status, 2);
}

TEST_F(Doctor, NamesAPairingThatCannotGoOn) {
    BringToNormalRunning();
    const std::string askAnew = "request-initial \"" + Psd() + "\" --main \"" + dealer_.Main().Psd() + "\"";
    const std::string reset = "request-reset \"" + Psd() + "\"";
    const auto both = [](const std::function<void()>& first, const std::function<void()>& second) {
        return [=] {
            first();
            second();
        };
    };
    // Not from 2 or 6 to 4 at once, where data would have had to come in.
    const auto ready = both(OnLaptop("UPDATE Company SET SyncState = 0"),
                            both(OnLaptop("UPDATE Company SET SyncState = 4"), OnRow("SyncState = 4")));
    Check(
        {
            {"lost-initial-sync laptop-1", askAnew, OnLaptop("UPDATE Company SET SyncState = 2"), ready},
            {"lost-initial-sync laptop-1", askAnew,
             both(OnLaptop("UPDATE Company SET SyncState = 2"), OnRow("SyncState = 0")), ready},
            {"lost-initial-sync laptop-1", askAnew, OnRow("SyncState = 0"), ready},
            {"lost-acknowledge laptop-1", askAnew, OnRow("SyncState = 3"), ready},
            {"lost-reset laptop-1", reset, OnLaptop("UPDATE Company SET SyncState = 6"), ready},
            {"lost-initial-sync laptop-1", askAnew,
             both(OnLaptop("UPDATE Company SET SyncState = 6"), OnRow("SyncState = 0")), ready},
            {"reset-stuck laptop-1", reset, OnRow("SyncState = 6, LastReceivedFrom = NULL"), ready},
            {"never-asked laptop-1", askAnew, OnLaptop("UPDATE Company SET SyncState = 0"), ready},
            {"not-registered laptop-1", "workstation add \"" + dealer_.Main().Psd(), OnRow("UniqueID = 'X'"),
             OnRow("UniqueID = '" + dealer_.Laptop().UniqueID() + "'")},
            {"sequence-lost laptop-1", reset, OnRow("NextSequenceToRoaming = 3"),
             OnRow("NextSequenceToRoaming = 0")},
            {"sequence-ahead laptop-1", reset, OnRow("NextSequenceFromRoaming = 3"),
             OnRow("NextSequenceFromRoaming = 0")},
            {"silent-workstation laptop-1", "its agent runs", OnRow("LastReceivedFrom = '20261108 13:00:00'"),
             OnRow("LastReceivedFrom = '20261108 15:00:00'")},
        },
        WithAll());
    // What begins anew by itself is no trouble.
    OnRow("NextSequenceToRoaming = 3")();
    EXPECT_EQ(Run({"sync", "request-reset", Psd()}).status, 0);
    EXPECT_EQ(Troubles(WithAll()), "");
}

TEST_F(Doctor, NamesAFileThatCouldNotBeImportedAtBothEndsUntilAResetHasMendedIt) {
    BringToNormalRunning();
    const auto with = [&](const testing::DealerComputer& computer) {
        return Troubles({"doctor", "--sync", dealer_.SyncFolder(), "--companies", computer.Companies()});
    };
    Change(dealer_.Laptop(), "L");
    dealer_.Laptop().RunPass();
    ASSERT_EQ(dealer_.FilesInSyncFolder(), 1U);
    fs::remove(dealer_.SyncFiles().front());
    Drop(dealer_.Main().UniqueID(), dealer_.Laptop().UniqueID(), "Sequence=0"); // without its data
    dealer_.Main().RunPass();
    EXPECT_EQ(with(dealer_.Main()), "import-refused laptop-1");
    EXPECT_EQ(with(dealer_.Laptop()), "") << "nobody has told it";
    Change(dealer_.Main(), "M");
    dealer_.RunRound();
    dealer_.RunRound();
    EXPECT_EQ(with(dealer_.Laptop()), "import-refused laptop-1");
    EXPECT_NE(remedies_.find("request-reset \"" + Psd()), std::string::npos) << remedies_;
    EXPECT_EQ(Troubles(WithAll()), "import-refused laptop-1");
    EXPECT_NE(Run(WithAll()).out.find(" UTC, held CustomerTypes 1)"), std::string::npos);

    EXPECT_EQ(Run({"sync", "request-reset", Psd()}).status, 0);
    EXPECT_EQ(Troubles(WithAll()), "");
    ASSERT_TRUE(dealer_.FinishResets());
    EXPECT_EQ(Troubles(WithAll()), "conflicts-open laptop-1");
    EXPECT_EQ(dealer_.Laptop().Value("SELECT group_concat(RowUniqueID || Reason) FROM ImportConflicts"), "L2");

    // Full data is not what it seems either.
    dealer_.Laptop().Open()->ExecuteScript(
        "UPDATE ImportConflicts SET State = 2; UPDATE Company SET SyncState = 2; "
        "UPDATE Company SET SyncState = 4");
    EXPECT_EQ(with(dealer_.Laptop()), "import-refused laptop-1");
}

TEST_F(Doctor, NamesFilesThatNobodyWillTake) {
    BringToNormalRunning();
    const std::string main = dealer_.Main().UniqueID();
    const std::string laptop = dealer_.Laptop().UniqueID();
    OnRow("NextSequenceFromRoaming = 5")();
    OnLaptop("UPDATE Company SET NextSequenceToMain = 5")();
    const auto isNamed = [&](const std::string& code, const std::string& name, const std::string& subject,
                             const std::string& remedy) {
        EXPECT_EQ(Troubles(WithAll()), code + " " + subject);
        EXPECT_NE(remedies_.find(remedy), std::string::npos) << remedies_;
        Without(name)();
    };
    const auto isNamedByItself = [&](const std::string& code, const std::string& name) {
        isNamed(code, name, name, "\"" + name + "\"");
    };
    const auto write = [&](const std::string& name) {
        folder_.Write("sync/" + name, "torn");
        return name;
    };
    isNamedByItself("late-file", Drop(main, laptop, "Sequence=4"));
    isNamedByItself("unknown-sender", Drop("MAIN", "STRANGER", "SyncState=-2"));
    isNamedByItself("unknown-sender", Drop(main, "STRANGER", "Sequence=0"));
    isNamedByItself("unclaimed-file", Drop("NOBODY", main, "Sequence=0"));
    isNamedByItself("damaged-file", write(main + "~x~20261122T135900.zip"));
    isNamedByItself("not-a-sync-file", write("holiday.zip"));
    const std::string stray = Drop(main, laptop, "Sequence=9");
    isNamed("stray-file", stray, "laptop-1", "\"" + stray + "\"");

    const std::string copy = write("~$half.tmp");
    fs::last_write_time(dealer_.SyncFolder() + "/" + copy,
                        fs::file_time_type::clock::now() - std::chrono::years(9));
    isNamedByItself("unfinished-copy", copy);
    isNamed("heartbeat-unanswered", write(laptop + "~x~20261121T135900.rhb"), "main", "--probe");
    isNamed("not-a-sync-file", "b.zip", write("b.zip"), "b.zip");

    // Sent and not fetched for three weeks; a file in its place is not yet missing.
    OnLaptop("UPDATE Company SET NextSequenceToMain = 6")();
    const std::string due = Drop(main, laptop, "Sequence=5");
    EXPECT_EQ(Troubles(WithAll()), "");
    const std::string again = Drop(main, laptop, "Sequence=5\r\nFromAppVersion=9");
    isNamed("duplicate-sequence", again, "laptop-1", "request-reset");
    dealer_.Time().SetNow(*ParseDate("2026-12-13 14:00:00"));
    isNamed("lying-file", due, "main", "agent of the receiving computer");
    EXPECT_EQ(Troubles(WithAll()), "sequence-lost laptop-1");

    dealer_.Time().SetNow(*ParseDate("2026-11-22 14:00:00"));
    // Main alone sees a gap by what waits behind it, a laptop alone does not know the other laptops.
    const std::string early = Drop(main, laptop, "Sequence=6");
    EXPECT_EQ(Troubles({"doctor", "--sync", dealer_.SyncFolder()}), "sequence-lost laptop-1");
    Without(early)();
    Drop(dealer_.Laptop(1).UniqueID(), main, "Sequence=0");
    EXPECT_EQ(Troubles({"doctor", "--sync", dealer_.SyncFolder(), "--companies", dealer_.Laptop().Companies()}),
              "");
}

TEST_F(Doctor, NamesWhatIsWrongWithACompany) {
    BringToNormalRunning();
    const auto option = [&](const std::string& key, const std::string& value) {
        return OnRegistry({"option", "set", dealer_.Main().Psd(), "Roaming Workstations", key, value});
    };
    const std::string broken = dealer_.Main().Companies() + "/broken.psd";
    const std::string copied = folder_ / "copied/copy.psd";
    Check(
        {
            {"sync-not-enabled main", "EnableSync 1", option("EnableSync", "0"), option("EnableSync", "1")},
            {"wrong-computer main", "SyncComputerName \"main\"", option("SyncComputerName", "desk"),
             option("SyncComputerName", "MAIN ")},
            {"conflicts-open laptop-1", "conflicts list \"" + Psd(),
             OnLaptop("INSERT INTO ImportConflicts (TableName, RowUniqueID) VALUES ('Customers', 'C')"),
             OnLaptop("UPDATE ImportConflicts SET State = 2")},
            {"cannot-store laptop-1", "events \"" + Psd(),
             OnLaptop("INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) VALUES ('', 'full', 4)"),
             OnLaptop("INSERT INTO CompanyEvents (OccurredOn, EventText) VALUES ('', 'again')")},
            {"records-put-aside laptop-1", "problems list \"" + Psd(),
             OnLaptop(
                 "INSERT INTO ImportProblems (TableName, OccurredOn) VALUES ('Customers', '20261110 00:00:00')"),
             OnLaptop("UPDATE ImportProblems SET OccurredOn = '20261107 00:00:00'")},
            {"company-not-opened " + broken, broken, [&] { std::ofstream(broken) << ""; },
             [&] { fs::remove(broken); }},
        },
        WithAll());

    fs::copy(dealer_.Laptop().Companies(), folder_ / "copied");
    EXPECT_EQ(Troubles(WithAll({"--companies", folder_ / "copied"})),
              "same-identity laptop-1\nnot-registered laptop-1");
    // The page of a table's rows, past the header and the schema.
    const std::string database = folder_ / "copied/dealer.db";
    const std::int64_t page =
        dealer_.Laptop().Number("SELECT rootpage FROM sqlite_master WHERE name = 'CustomerTypes'");
    std::fstream(database, std::ios::in | std::ios::out | std::ios::binary)
        .seekp((page - 1) * dealer_.Laptop().Number("PRAGMA page_size"))
        .write(std::string(64, 'x').data(), 64);
    const std::vector<std::string> theCopy{"doctor", "--sync", dealer_.SyncFolder(), "--companies",
                                           folder_ / "copied"};
    EXPECT_EQ(Troubles(theCopy), "database-damaged laptop-1");
    EXPECT_NE(remedies_.find("backup"), std::string::npos);
    fs::resize_file(database, 5000);
    EXPECT_EQ(Troubles(theCopy), "company-not-opened " + folder_.Path() + "/copied/dealer.psd");

    // Laptop's own folder on a computer that was never told that it is a workstation.
    Run({"location", "set", "Companies", dealer_.Laptop().Companies()});
    EXPECT_EQ(Troubles({"doctor"}), "wrong-role laptop-1");
    Run({"role", "roaming"});
    EXPECT_EQ(Troubles({"doctor"}), "");
}

TEST_F(Doctor, NamesWhatIsWrongWithTheComputer) {
    const auto setting = [&](const std::string& name, const std::string& value) {
        return OnRegistry({"settings", "set", name, value});
    };
    const auto location = [&](const std::string& name, const std::string& folder) {
        return OnRegistry({"location", "set", name, folder});
    };
    const auto noLocation = [&](const std::string& name) {
        return OnRegistry({"settings", "set", "UFL:" + name, "", "--key",
                           R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Default))"});
    };
    const auto companies = location("Companies", dealer_.Main().Companies());
    const auto sync = location("Sync", dealer_.SyncFolder());
    Check(
        {
            {"stop-requested StopSync", "qndr5rwsyncd", OnRegistry({"stop"}), setting("StopSync", "0")},
            {"debug-log-on DebugSyncAgent", "DebugSyncAgent 0", setting("DebugSyncAgent", "1"),
             setting("DebugSyncAgent", "0")},
            {"main-no-response SyncHeartbeat", "main computer", setting("SyncHeartbeat", "2"),
             setting("EnableHeartbeat", "0")},
            {"no-companies-location main", "location set Companies", noLocation("Companies"), companies},
            {"no-companies-folder /absent", "location set Companies", location("Companies", "/absent"), companies},
            {"no-company " + dealer_.SyncFolder(), ".psd", location("Companies", dealer_.SyncFolder()), companies},
            {"no-sync-location main", "location set Sync", noLocation("Sync"), sync},
            {"no-sync-folder /absent", "location set Sync", location("Sync", "/absent"), sync},
        },
        {"doctor"});

    // The folder's own clock is the system's.
    const std::string stamp = folder_.Write("stamp", "");
    const suite::Computer computer = suite::Computer::InFolder(folder_ / "main", "main");
    const Date now = ComputerServices(computer, {dealer_.Time(), dealer_.Time(), dealer_.Time()}, "test", {})
                         .Services()
                         .fileTools.GetFileDate(stamp);
    dealer_.Time().SetNow(now);
    EXPECT_EQ(Troubles({"doctor", "--probe"}), "");
    dealer_.Time().SetNow(now.AddMinutes(-10));
    EXPECT_EQ(Troubles({"doctor", "--probe"}), "clock-off main");
    EXPECT_TRUE(folder_.Names("sync").empty());
    dealer_.Time().SetNow(now);
    testing::ScriptedGate gate;
    gate.Refuse("FileTools.CreateTemporaryFile");
    EXPECT_EQ(Troubles({"doctor", "--probe"}, &gate), "sync-folder-not-writable " + dealer_.SyncFolder());
    gate.Refuse("FileTools.CreateTemporaryFile", 0);
    gate.Refuse("FileTools.DeleteFile");
    EXPECT_EQ(Troubles({"doctor", "--probe"}, &gate), "sync-folder-not-cleanable " + dealer_.SyncFolder());
    EXPECT_NE(remedies_.find(folder_.Names("sync").at(0)), std::string::npos) << remedies_;
    gate.Refuse("RegistryTools.GetLong");
    EXPECT_NE(Troubles({"doctor"}, &gate).find("bad-setting StopSync"), std::string::npos);
    gate.Refuse("RegistryTools.GetLong", 0);
    gate.Refuse("PathTools.CreateTemporaryFolder");
    EXPECT_EQ(Troubles({"doctor"}, &gate), "sync-folder-unreadable " + dealer_.SyncFolder());
}

TEST_F(Doctor, GoesByOneMomentWhileAgentsWork) {
    // The laptop's request is listed, and taken before it is read.
    dealer_.Laptop().RunPass();
    testing::ScriptedGate gate;
    bool isTaken = false;
    gate.Before("FileTools.GetFileSize", [&] {
        if (!std::exchange(isTaken, true)) {
            dealer_.Main().RunPass();
            dealer_.Laptop().RunPass();
        }
    });
    EXPECT_EQ(Troubles(WithAll(), &gate), "");
    EXPECT_TRUE(isTaken);
}

} // namespace
} // namespace qndr::control
