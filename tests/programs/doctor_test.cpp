#include "programs/qndr5ctl_fixture.h"
#include "suite/schema/company_schema.h"
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
        return Type(suite::Computer::InFolder(folder_ / "main", "main"), dealer_.Time(), arguments, gate);
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
    /// Each error and warning as "code subject", one a line; in `remedies_` what to do, and in `commands_` the
    /// commands of those that are of the first one's kind. The clocks of a disk and of a virtual time never agree.
    std::string Troubles(std::vector<std::string> arguments, services::CallGate* gate = nullptr) {
        arguments.emplace_back("--json");
        const Outcome outcome = Run(arguments, gate);
        const auto ask = [&](const std::string& what) {
            return Ask("WITH told AS (SELECT value AS v, json_extract(value, '$.code') AS code FROM "
                       "json_each(?1, '$.findings') WHERE json_extract(value, '$.severity') <> 'note' "
                       "AND json_extract(value, '$.code') <> 'clock-off') " +
                           what,
                       {outcome.out});
        };
        const std::string troubles =
            ask("SELECT group_concat(code || ' ' || json_extract(v, '$.subject'), char(10)) FROM told");
        remedies_ = ask("SELECT group_concat(json_extract(v, '$.remedy'), char(10)) FROM told");
        commands_ =
            ask("SELECT group_concat(c.value, char(10)) FROM told, json_each(v, '$.commands') AS c WHERE code = "
                "(SELECT code FROM told LIMIT 1)");
        EXPECT_EQ(outcome.status, outcome.out.find("\"healthy\": true") == std::string::npos ? 1 : 0)
            << outcome.out << outcome.errors;
        return troubles;
    }
    /// Types the commands as they were told: a real shell takes the words apart, and runs what is not ours.
    void DoLiterally() {
        std::istringstream lines(commands_);
        EXPECT_FALSE(commands_.empty()) << remedies_;
        for (std::string line; std::getline(lines, line);) {
            if (!line.starts_with("qndr5ctl ")) {
                EXPECT_EQ(std::system(line.c_str()), 0) << line;
                continue;
            }
            const std::string words = folder_ / "words";
            EXPECT_EQ(std::system(("printf '%s\\n' " + line.substr(9) + " >'" + words + "'").c_str()), 0) << line;
            std::ifstream file(words);
            std::vector<std::string> arguments;
            for (std::string word; std::getline(file, word);) {
                arguments.push_back(word);
            }
            const Outcome outcome = Run(arguments);
            EXPECT_EQ(outcome.status, 0) << line << '\n' << outcome.errors;
        }
    }
    /// Passes of main and the first laptop, with more than the five quiet minutes between.
    void Settle() {
        for (int round = 0; round < 5; ++round) {
            dealer_.Laptop().RunPass();
            dealer_.Main().RunPass();
            dealer_.Time().Advance(6 * 60 * 1000);
        }
        dealer_.Laptop().RunPass();
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
        PackFolder(folder_ / "packed", dealer_.SyncFolder() + "/" + name);
        return name;
    }

    struct Planted {
        std::string troubles;
        std::function<void()> plant;
        /// What a person has to decide or do; nothing where the commands are to be typed.
        std::function<void()> byHand;
        std::string remedy; ///< some of its words, where it is prose
    };
    /// Each is named, and nothing else is; the remedy of the first one done literally, all is well.
    void Check(const std::vector<Planted>& all, const std::vector<std::string>& arguments,
               bool withPasses = true) {
        for (const Planted& each : all) {
            each.plant();
            EXPECT_EQ(Troubles(arguments), each.troubles);
            EXPECT_NE(remedies_.find(each.remedy), std::string::npos) << each.troubles << " / " << remedies_;
            if (each.byHand) {
                each.byHand();
            } else {
                DoLiterally();
            }
            if (withPasses) {
                Settle();
            }
            EXPECT_EQ(Troubles(arguments), "") << "behind " << each.troubles;
        }
    }
    /// The one file in the Sync folder for the first laptop or from it.
    std::string FileTo(const std::string& uniqueID) const {
        for (const std::string& path : dealer_.SyncFiles()) {
            if (fs::path(path).filename().string().starts_with(uniqueID)) {
                return path;
            }
        }
        return "none";
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
    /// The Sync folder's own clock is the system's.
    Date DiskTime() {
        const suite::Computer computer = suite::Computer::InFolder(folder_ / "main", "main");
        return ComputerServices(computer, {dealer_.Time(), dealer_.Time(), dealer_.Time()}, "test", {})
            .Services()
            .fileTools.GetFileDate(folder_.Write("stamp", ""));
    }
    std::function<void()> Without(const std::string& name) const {
        return [this, name] { fs::remove(dealer_.SyncFolder() + "/" + name); };
    }
    std::string Psd() const { return dealer_.Laptop().Psd(); }

    const test::TemporaryFolder folder_{test::QuickPlace()};
    testing::Dealer dealer_{folder_.Path(), 2};
    std::string remedies_;
    std::string commands_;
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
    const Date virtualNow = dealer_.Time().Now();
    dealer_.Time().SetNow(DiskTime());
    const auto last = [&](const std::vector<std::string>& arguments) {
        const std::string out = Run(arguments).out;
        return out.substr(out.rfind('\n', out.size() - 2) + 1);
    };
    EXPECT_EQ(last(WithAll()),
              "All is well: companies asked 3, files in the Sync folder " + std::to_string(before.size()) + ".\n");
    EXPECT_EQ(last({"doctor"}).find("Nothing is wrong as far as it can be seen from here"), 0U) << "main alone";
    dealer_.Time().SetNow(virtualNow);
    EXPECT_EQ(folder_.Names("sync"), before);
    EXPECT_EQ(Run({"doctor", "--days", "0"}).status, 2);
}

TEST_F(Doctor, MendsAPairingThatCannotGoOn) {
    BringToNormalRunning();
    const auto both = [](const std::function<void()>& first, const std::function<void()>& second) {
        return [=] {
            first();
            second();
        };
    };
    const std::string atReset = "UPDATE Company SET SyncState = 6, NextSequenceFromMain = 0";
    const auto secondRequest = [&] {
        OnRow("SyncState = 1")();
        dealer_.Main().RunPass();
        EXPECT_EQ(Run({"sync", "request-reset", Psd()}).status, 0);
        dealer_.Laptop().RunPass();
    };
    Check(
        {
            {"lost-initial-sync laptop-1", OnLaptop("UPDATE Company SET SyncState = 2"), {}, ""},
            {"lost-initial-sync laptop-1",
             both(OnLaptop("UPDATE Company SET SyncState = 6"), OnRow("SyncState = 0")),
             {},
             "Stop both agents"},
            // Full data lies for it that it will not take; and a request that main will not hear.
            {"lost-acknowledge laptop-1", both(OnRow("SyncState = 1"), [&] { dealer_.Main().RunPass(); }), {}, ""},
            {"lost-acknowledge laptop-1", secondRequest, {}, ""},
            {"lost-reset laptop-1", OnLaptop(atReset), {}, ""},
            {"reset-stuck laptop-1",
             both(OnLaptop(atReset), OnRow("SyncState = 6, NextSequenceToRoaming = 0, LastReceivedFrom = NULL")),
             {},
             ""},
            {"reset-stuck laptop-1",
             both(OnLaptop(atReset),
                  OnRow("SyncState = 6, NextSequenceToRoaming = 0, LastReceivedFrom = '20990101 00:00:00'")),
             {},
             ""},
            {"lost-reset laptop-1",
             both(OnLaptop(atReset),
                  both(OnRow("SyncState = 5, NextSequenceToRoaming = 4"), [&] { dealer_.Main().RunPass(); })),
             {},
             ""},
            {"never-asked laptop-1", OnLaptop("UPDATE Company SET SyncState = 0"), {}, ""},
            {"not-registered laptop-1", OnMain("DELETE FROM RoamingWorkstations WHERE Name = 'laptop-1'"), {}, ""},
            {"sequence-lost laptop-1", OnRow("NextSequenceToRoaming = 3"), {}, "cloud"},
            {"sequence-ahead laptop-1", OnRow("NextSequenceFromRoaming = 30"), {}, ""},
            {"silent-workstation laptop-1", OnRow("LastReceivedFrom = '20261101 13:00:00'"),
             OnRow("LastReceivedFrom = GETUTCDATE()"), "its agent runs"},
        },
        WithAll());
    EXPECT_EQ(dealer_.Laptop().SyncState() * 10 + dealer_.RowState(dealer_.Laptop()), 44);
    // What begins anew by itself is no trouble.
    OnRow("NextSequenceToRoaming = 3")();
    EXPECT_EQ(Run({"sync", "request-reset", Psd()}).status, 0);
    EXPECT_EQ(Troubles(WithAll()), "");
}

TEST_F(Doctor, MendsWhatHappensInTheSyncFolder) {
    BringToNormalRunning();
    Run({"location", "set", "Sync", dealer_.SyncFolder()});
    const std::string laptop = dealer_.Laptop().UniqueID();
    const auto next = [&](const std::function<void(const std::string&)>& harm) {
        return [&, harm] {
            Change(dealer_.Main(), "next" + std::to_string(dealer_.Time().Now().Days()));
            dealer_.Main().RunPass();
            harm(FileTo(laptop));
        };
    };
    const auto check = [&](const std::string& troubles, const std::function<void()>& plant,
                           const std::string& listed = "") {
        plant();
        EXPECT_EQ(Troubles(WithAll()).substr(0, troubles.size()), troubles);
        EXPECT_NE(Run({"folder", dealer_.SyncFolder(), "--company", Psd()}).out.find(listed), std::string::npos);
        DoLiterally();
        Settle();
        EXPECT_EQ(Troubles(WithAll()), "") << "behind " << troubles;
    };
    check("misnamed-file", next([](const std::string& file) { fs::rename(file, file + ".bak"); }),
          "rename it back");
    check("misnamed-file it's.zip",
          next([&](const std::string& file) { fs::rename(file, dealer_.SyncFolder() + "/it's.zip"); }),
          "rename it back");
    check("damaged-file", next([](const std::string& file) { fs::resize_file(file, fs::file_size(file) / 2); }),
          "a reset is needed");
    // A day in the wrong folder, and back.
    check("file-in-former-folder", [&] {
        Run({"location", "set", "Sync", folder_ / "wrong"});
        next([](const std::string&) {})();
        Run({"location", "set", "Sync", dealer_.SyncFolder()});
    });
    // An empty folder where the share was: main's agent puts nothing into it.
    check("sync-folder-wrong " + dealer_.SyncFolder(), [&] {
        fs::remove(dealer_.SyncFolder() + "/sync-folder.qndr5");
        next([](const std::string& file) { EXPECT_EQ(file, "none"); })();
    });
    // A lost number that held an order, which no reset brings.
    check("late-file", [&] {
        dealer_.Laptop().Put("Orders", "O1", "OrderNumber", "7");
        dealer_.Laptop().RunPass();
        OnRow("NextSequenceFromRoaming = 40")();
        OnLaptop("UPDATE Company SET NextSequenceToMain = 40")();
    });
    EXPECT_EQ(dealer_.Main().Get("Orders", "O1", "OrderNumber"), "7");
    EXPECT_EQ(dealer_.Main().Value("SELECT Origin FROM AuditLog WHERE AuditUniqueID = 'O1'"), laptop);
    EXPECT_EQ(dealer_.Main().Conflicts() + dealer_.Laptop().Conflicts(), "");
}

TEST_F(Doctor, NamesAFileThatCouldNotBeImportedAtBothEndsUntilAResetHasMendedIt) {
    dealer_.Main().SetNumber(settings::ProofHours, 0); // which would find what is missing before the reset does
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
    EXPECT_NE(remedies_.find("request-reset '" + Psd()), std::string::npos) << remedies_;
    EXPECT_EQ(Troubles(WithAll()), "import-refused laptop-1");
    EXPECT_NE(Run(WithAll()).out.find(" UTC, held CustomerTypes 1)"), std::string::npos);

    Troubles(WithAll());
    DoLiterally();
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
        isNamed(code, name, name, "/" + name + "'");
    };
    const auto write = [&](const std::string& name) {
        folder_.Write("sync/" + name, "torn");
        return name;
    };
    isNamedByItself("late-file", Drop(main, laptop, "Sequence=4"));
    // It may be another main's, which uses the same folder.
    const std::string request = Drop("MAIN", "STRANGER", "SyncState=-2");
    isNamed("unregistered-request", request, request, "Leave it where it lies");
    isNamedByItself("unknown-sender", Drop(main, "STRANGER", "Sequence=0"));
    isNamedByItself("unclaimed-file", Drop("NOBODY", main, "Sequence=0"));
    const std::string damaged = write(main + "~x~20261122T135900.zip");
    isNamed("damaged-file", damaged, damaged, damaged);
    isNamedByItself("not-a-sync-file", write("holiday.zip"));
    const std::string stray = Drop(main, laptop, "Sequence=9");
    isNamed("stray-file", stray, "laptop-1", "/" + stray + "'");

    // An hour for a copy by the folder's clock, a day for a heartbeat by the stamp in its name.
    const std::string copy = write("~$half.tmp");
    for (const int minutes : {59, 61}) {
        fs::last_write_time(dealer_.SyncFolder() + "/" + copy,
                            dealer_.Main().VirtualFileTime() - std::chrono::minutes(minutes));
        EXPECT_EQ(Troubles(WithAll()), minutes > 60 ? "unfinished-copy " + copy : "");
    }
    isNamedByItself("unfinished-copy", copy);
    const std::string young = write(laptop + "~x~20261121T141000.rhb");
    EXPECT_EQ(Troubles(WithAll()), "");
    Without(young)();
    isNamed("heartbeat-unanswered", write(laptop + "~x~20261121T135900.rhb"), "main", "agent runs");
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
    const std::string here = dealer_.Main().Companies();
    const std::string broken = here + "/broken.psd";
    const auto copyHere = [&](const std::string& psd, const std::string& name) {
        return [=] { fs::copy(psd, here + "/" + name); };
    };
    const auto linked = [&] {
        std::ofstream(here + "/x.psd") << "[COMPANY]\nName=L\nConnectionString=Provider=SQLite;Data Source="
                                       << dealer_.Laptop().Companies() << "/dealer.db\n";
    };
    Check(
        {
            {"sync-not-enabled main", option("EnableSync", "0"), {}, ""},
            {"wrong-computer main", option("SyncComputerName", ""), {}, ""},
            {"wrong-computer main", option("SyncComputerName", "desk"), option("SyncComputerName", "MAIN "),
             "which one lives"},
            {"conflicts-open main",
             OnMain("INSERT INTO ImportConflicts (TableName, RowUniqueID) VALUES ('Customers', 'C')"),
             OnMain("UPDATE ImportConflicts SET State = 2"), "conflicts list '" + dealer_.Main().Psd()},
            {"cannot-store main",
             OnMain("INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) VALUES ('', 'full', 4)"),
             OnMain("INSERT INTO CompanyEvents (OccurredOn, EventText) VALUES ('', 'again')"),
             "events '" + dealer_.Main().Psd()},
            {"records-put-aside main",
             OnMain(
                 "INSERT INTO ImportProblems (TableName, OccurredOn) VALUES ('Customers', '20261110 00:00:00')"),
             OnMain("UPDATE ImportProblems SET OccurredOn = '20261107 00:00:00'"), "problems list"},
            {"two-agents main",
             OnMain("INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) VALUES"
                    " ('20261122 00:00:00', 'left alone', 5)"),
             OnMain("UPDATE CompanyEvents SET OccurredOn = '20261121 00:00:00'"), "qndr5ctl stop"},
            {"company-not-opened " + broken, [&] { std::ofstream(broken) << ""; }, [&] { fs::remove(broken); },
             broken},
            {"older-company " + dealer_.Main().Psd(), OnMain("UPDATE SchemaVersion SET Version = 5"),
             OnMain("UPDATE SchemaVersion SET Version = " + std::to_string(suite::CompanySchemaVersion)),
             "make a pass"},
            {"same-database main", copyHere(dealer_.Main().Psd(), "copy of dealer.psd"), {}, ""},
            {"misplaced-workstation laptop-1", linked, [&] { fs::remove(here + "/x.psd"); },
             "Move '" + here + "/x.psd'"},
            {"main-as-roaming main", OnRegistry({"role", "roaming"}), {}, ""},
        },
        {"doctor"}, false);

    fs::copy(dealer_.Laptop().Companies(), folder_ / "copied");
    EXPECT_EQ(Troubles(WithAll({"--companies", folder_ / "copied"})),
              "same-identity laptop-1\nnot-registered laptop-1");
    EXPECT_NE(remedies_.find("newer change"), std::string::npos);
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
    const std::string temporary = folder_ / "main/Temp";
    const auto led = [&] {
        fs::remove_all(temporary);
        fs::create_directory_symlink(folder_.Path(), temporary);
    };
    const auto companies = location("Companies", dealer_.Main().Companies());
    const auto sync = location("Sync", dealer_.SyncFolder());
    const std::string nested = dealer_.Main().Companies() + "/sync";
    // The fixture has named the location without 'location set', which remembers its mark.
    sync();
    Check(
        {
            {"stop-requested StopSync", OnRegistry({"stop"}), setting("StopSync", "0"), "qndr5rwsyncd"},
            {"main-no-response SyncHeartbeat", setting("SyncHeartbeat", "2"), setting("EnableHeartbeat", "0"),
             "main computer"},
            {"agent-idle main", setting("LastSync", "2026-11-20 14:00:00"), setting("LastSync", ""),
             "Start the agent"},
            {"clock-went-back main", setting("LastSync", "2026-11-22 18:00:00"), setting("LastSync", ""), "clock"},
            {"no-companies-location main", noLocation("Companies"), companies, "location set Companies"},
            {"no-companies-folder /absent", setting("UFL:Companies", "/absent"), companies,
             "location set Companies"},
            {"no-company " + dealer_.SyncFolder() + "\nfolders-nested " + dealer_.SyncFolder(),
             location("Companies", dealer_.SyncFolder()), companies, ".psd"},
            {"folders-nested " + nested, location("Sync", nested), sync, "another Sync folder"},
            {"no-sync-location main", noLocation("Sync"), sync, "location set Sync"},
            {"no-sync-folder /absent", setting("UFL:Sync", "/absent"), sync, "location set Sync"},
            {"no-temporary-folder " + temporary, led, [&] { fs::remove(temporary); }, temporary},
        },
        {"doctor"}, false);
    // A note is told, and is nothing wrong unless it is asked for.
    setting("DebugSyncAgent", "1")();
    EXPECT_EQ(Run({"doctor", "--level", "error"}).status, 0);
    const Outcome noted = Run({"doctor", "--level", "note"});
    EXPECT_EQ(noted.status, 1);
    EXPECT_NE(noted.out.find("Run:    qndr5ctl settings set DebugSyncAgent 0\n"), std::string::npos) << noted.out;

    const Date now = DiskTime();
    dealer_.Time().SetNow(now);
    EXPECT_EQ(Run({"doctor"}).out.find("clock-off"), std::string::npos);
    dealer_.Time().SetNow(now.AddMinutes(-10));
    EXPECT_NE(Run({"doctor", "--probe"}).out.find("clock-off"), std::string::npos);
    EXPECT_EQ(folder_.Names("sync"), std::vector<std::string>{"sync-folder.qndr5"});
    testing::ScriptedGate gate;
    gate.Refuse(calls::FileTools::CreateTemporaryFile);
    EXPECT_EQ(Troubles({"doctor"}, &gate), "sync-folder-not-writable " + dealer_.SyncFolder());
    gate.Refuse(calls::FileTools::CreateTemporaryFile, 0);
    gate.Refuse(calls::FileTools::DeleteFile);
    for (int look = 0; look < 2; ++look) {
        EXPECT_EQ(Troubles({"doctor"}, &gate), "sync-folder-not-cleanable " + dealer_.SyncFolder());
        EXPECT_EQ(folder_.Names("sync").size(), 2U) << "a second look leaves no second file";
    }
    gate.Refuse(calls::FileTools::DeleteFile, 0);
    DoLiterally();
    EXPECT_EQ(Troubles({"doctor"}), "");
    gate.Refuse(calls::RegistryTools::GetLong);
    EXPECT_NE(Troubles({"doctor"}, &gate).find("bad-setting StopSync"), std::string::npos);
    gate.Refuse(calls::RegistryTools::GetLong, 0);
    gate.Refuse(calls::PathTools::CreateTemporaryFolder);
    EXPECT_EQ(Troubles({"doctor"}, &gate), "sync-folder-unreadable " + dealer_.SyncFolder());
}

TEST_F(Doctor, GoesByOneMomentWhileAgentsWork) {
    // The laptop's request is listed, and taken before it is read.
    dealer_.Laptop().RunPass();
    testing::ScriptedGate gate;
    bool isTaken = false;
    gate.Before(calls::FileTools::GetFileSize, [&] {
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
