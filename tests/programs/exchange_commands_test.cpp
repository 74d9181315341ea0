#include "programs/qndr5ctl_fixture.h"
#include "support/dealer.h"

#include <set>

namespace qndr::control {
namespace {

/// A dealer with one laptop, and commands typed on either computer.
class ExchangeCommands : public ::testing::Test {
  protected:
    ExchangeCommands() { dealer_.SetUp(60); }

    /// The output of a command on a computer of the dealer; `failure_` has its error line.
    std::string Run(const std::string& computerName, const std::vector<std::string>& arguments, int status = 0) {
        const Outcome outcome =
            Type(suite::Computer::InFolder(folder_ / computerName, computerName), dealer_.Time(), arguments);
        EXPECT_EQ(outcome.status, status) << outcome.errors;
        failure_ = outcome.errors;
        return outcome.out;
    }
    /// A member of the element of "files" whose name ends so.
    std::string OfFile(const std::string& json, const std::string& nameEnd, const std::string& member) {
        return Ask("SELECT json_extract(value, '$.' || ?3) FROM json_each(?1, '$.files')"
                   " WHERE json_extract(value, '$.file') LIKE '%' || ?2",
                   {json, nameEnd, member});
    }

    /// Lets the laptop's agent send what is new and gives the path of the one backup that it made.
    std::string BackUp() {
        const std::size_t before = backups_.size();
        Laptop().RunPass();
        std::string made;
        for (const auto& entry :
             fs::recursive_directory_iterator(folder_ / "laptop-1/Local/dealer/Sync Local/Orders")) {
            if (entry.is_regular_file() && backups_.insert(entry.path().string()).second) {
                made = entry.path().string();
            }
        }
        EXPECT_EQ(backups_.size(), before + 1);
        return made;
    }
    void OnLaptop(const std::string& statement) const { Laptop().Open()->Execute(statement); }
    const testing::DealerComputer& Laptop() const { return dealer_.Laptop(); }
    std::string OrderOnLaptop() const {
        return Laptop().Value(
            "SELECT group_concat(line, '|') FROM (SELECT 1 AS part, OrderNumber || Notes || Total AS"
            " line FROM Orders WHERE UniqueID = 'O-7' UNION ALL SELECT 2, UniqueID || LineNumber"
            " || ifnull(Description, '-') || UnitPrice FROM OrderItems WHERE OrderUniqueID = 'O-7'"
            " ORDER BY 1, 2)");
    }

    const test::TemporaryFolder folder_{test::QuickPlace()};
    testing::Dealer dealer_{folder_.Path(), 1};
    std::string failure_;
    std::set<std::string> backups_;
};

TEST_F(ExchangeCommands, TellsWhoTakesEachFileAndTouchesNone) {
    Laptop().RunPass();
    const std::string sync = dealer_.SyncFolder();
    folder_.Write("sync/" + dealer_.Main().UniqueID() + "~a~b.zip", "torn");
    folder_.Write("sync/notes.txt", "not ours");
    folder_.Write("sync/one~two.zip", "");
    folder_.Write("sync/~$half.tmp", "PK");
    folder_.Write("sync/" + Laptop().UniqueID() + "~a~20261122T130000.rhb", "");
    fs::create_directories(sync + "/below~a~b.zip");
    const std::vector<std::string> before = folder_.Names("sync");
    dealer_.Time().SetNow(*ParseDate("2026-11-22 15:00:00"));

    Run("main", {"location", "set", "Companies", dealer_.Main().Companies()});
    const std::string atMain = Run("main", {"folder", "--json"});
    EXPECT_EQ(JsonAt(atMain, "$.folder"), sync);
    EXPECT_EQ(JsonAt(atMain, "$.files[6].file"), "") << "a subfolder is no file";
    EXPECT_EQ(OfFile(atMain, "~a~b.zip", "kind"), "unreadable");
    EXPECT_EQ(OfFile(atMain, "~a~b.zip", "fate"), "nobody");
    EXPECT_NE(OfFile(atMain, "~a~b.zip", "damage"), "");
    EXPECT_EQ(OfFile(atMain, "notes.txt", "kind"), "not a sync file");
    EXPECT_EQ(OfFile(atMain, "two.zip", "kind"), "not a sync file");
    EXPECT_EQ(OfFile(atMain, "half.tmp", "kind"), "unfinished copy");
    EXPECT_EQ(OfFile(atMain, ".rhb", "sender"), "laptop-1");
    EXPECT_EQ(OfFile(atMain, ".rhb", "ageSeconds"), "7200");

    const auto request = [&](const std::string& json, const std::string& member) {
        std::string name;
        for (const std::string& each : folder_.Names("sync")) {
            if (each.starts_with("MAIN~")) {
                name = each;
            }
        }
        return OfFile(json, name, member);
    };
    EXPECT_EQ(request(atMain, "kind"), "initial sync request");
    EXPECT_EQ(request(atMain, "sender"), "laptop-1");
    EXPECT_EQ(request(atMain, "judgement"), "main takes it next");
    EXPECT_EQ(request(Run("laptop-1", {"folder", sync, "--json", "--company", Laptop().Psd()}), "fate"),
              "elsewhere");
    EXPECT_EQ(folder_.Names("sync"), before);

    folder_.Write("main/Companies/broken.psd", "");
    EXPECT_NE(Run("main", {"folder"}).find("broken.psd"), std::string::npos);
    Run("main", {"folder", "--company", dealer_.Main().Companies() + "/broken.psd"}, 1);
    Run("main", {"folder", sync + "/absent"}, 1);
    EXPECT_NE(failure_.find("there is no folder"), std::string::npos) << failure_;
}

TEST_F(ExchangeCommands, FollowsAFirstExchange) {
    Laptop().RunPass();
    dealer_.Main().RunPass();
    const std::vector<std::string> both{
        "folder", dealer_.SyncFolder(), "--json", "--company", dealer_.Main().Psd(), "--company", Laptop().Psd()};
    const std::string full = Run("main", both);
    EXPECT_EQ(JsonAt(full, "$.files[0].addressee") + "/" + JsonAt(full, "$.files[0].sender"), "laptop-1/main");
    EXPECT_EQ(JsonAt(full, "$.files[0].kind"), "full data");
    EXPECT_EQ(JsonAt(full, "$.files[0].judgement"), "laptop-1 takes it next");
    const std::string archive = dealer_.SyncFolder() + "/" + JsonAt(full, "$.files[0].file");
    EXPECT_EQ(JsonAt(Run("main", {"file", "show", archive, "--json"}), "$.tables[0].records"),
              std::to_string(dealer_.Main().Number("SELECT COUNT(*) FROM ProductTypes")));
    Laptop().RunPass();
    EXPECT_EQ(JsonAt(Run("main", both), "$.files[0].kind"), "acknowledge");
    EXPECT_EQ(JsonAt(Run("main", both), "$.files[0].judgement"), "main takes it next");
    dealer_.Main().RunPass();
    EXPECT_EQ(JsonAt(Run("main", both), "$.files[0].kind"), "standing");
}

TEST_F(ExchangeCommands, GetsAnOrderBackAsAChangeOfItsOwn) {
    OnLaptop("UPDATE Company SET SyncState = 4");
    OnLaptop("INSERT INTO Orders (UniqueID, OrderNumber, Notes, Total) VALUES ('O-7', 7, 'it''s good', 12.5)");
    OnLaptop("INSERT INTO OrderItems (UniqueID, OrderUniqueID, LineNumber, Description, UnitPrice) VALUES"
             " ('I-1', 'O-7', 1, 'Blind', 5), ('I-2', 'O-7', 2, NULL, 7.5)");
    const std::string kept = OrderOnLaptop();
    const std::string archive = BackUp();
    OnLaptop("UPDATE Orders SET Notes = 'spoilt' WHERE UniqueID = 'O-7'");
    OnLaptop("UPDATE OrderItems SET Description = NULL WHERE UniqueID = 'I-1'");
    OnLaptop("DELETE FROM OrderItems WHERE UniqueID = 'I-2'");
    OnLaptop("INSERT INTO OrderItems (UniqueID, OrderUniqueID, LineNumber) VALUES ('I-3', 'o-7', 3)");
    OnLaptop("INSERT INTO OrderItems (UniqueID, OrderUniqueID, LineNumber) VALUES ('I-9', 'O-8', 1)");
    const std::string spoilt = OrderOnLaptop();
    const std::int64_t audited = Laptop().Number("SELECT MAX(ID) FROM AuditLog");

    // A row that the database refuses at the very end takes all of it back.
    OnLaptop("CREATE TRIGGER stop BEFORE DELETE ON OrderItems BEGIN SELECT RAISE(ABORT, 'not now'); END");
    Run("laptop-1", {"order", "restore", archive, Laptop().Psd()}, 1);
    EXPECT_NE(failure_.find("not now"), std::string::npos) << failure_;
    OnLaptop("DROP TRIGGER stop");
    for (const char* state : {"0", "5", "6"}) {
        OnLaptop(std::string("UPDATE Company SET SyncState = ") + state);
        Run("laptop-1", {"order", "restore", archive, Laptop().Psd()}, 1);
        EXPECT_NE(failure_.find("when it is ready"), std::string::npos) << failure_;
    }
    EXPECT_EQ(OrderOnLaptop(), spoilt);
    EXPECT_EQ(Laptop().Number("SELECT MAX(ID) FROM AuditLog"), audited);

    OnLaptop("UPDATE Company SET SyncState = 4");
    EXPECT_EQ(
        Run("laptop-1", {"order", "restore", archive, Laptop().Psd()}),
        "Restored the order 7: the order itself changed; items changed 1, made anew 1, removed 1. It travels "
        "like any other change.\n");
    EXPECT_EQ(OrderOnLaptop(), kept);
    EXPECT_EQ(Laptop().Value("SELECT group_concat(AuditUniqueID || AuditType || ifnull(Origin, ''), ' ') FROM"
                             " AuditLog WHERE ID > " +
                             std::to_string(audited)),
              "O-72 I-12 I-21 I-33");
    EXPECT_NE(Run("laptop-1", {"order", "restore", archive, Laptop().Psd()}).find("nothing was changed"),
              std::string::npos);
    EXPECT_EQ(Laptop().Number("SELECT MAX(ID) FROM AuditLog"), audited + 4);

    OnLaptop("DELETE FROM Orders WHERE UniqueID = 'O-7'");
    EXPECT_NE(Run("laptop-1", {"order", "restore", archive, Laptop().Psd()}).find("made anew"), std::string::npos);
    EXPECT_EQ(OrderOnLaptop(), kept);
    EXPECT_EQ(Laptop().Number("SELECT COUNT(*) FROM vwExporting_Orders_NumberSync WHERE SyncState = 0"), 0);
    EXPECT_EQ(Laptop().Number("SELECT COUNT(*) FROM OrderItems WHERE UniqueID = 'I-9'"), 1);
}

TEST_F(ExchangeCommands, FindsAndShowsOrderBackups) {
    OnLaptop("UPDATE Company SET SyncState = 4");
    OnLaptop("INSERT INTO Orders (UniqueID, OrderNumber, Notes) VALUES ('O-7', 7, 'first')");
    const std::string older = BackUp();
    OnLaptop("UPDATE Orders SET Notes = 'second'");
    OnLaptop("INSERT INTO OrderItems (UniqueID, OrderUniqueID, LineNumber, Width) VALUES ('I-1', 'O-7', 1, 900)");
    const std::string newer = BackUp();
    const std::string orders = "laptop-1/Local/dealer/Sync Local/Orders/";
    folder_.Write(orders + "2026/11/other~a~20261122T000002.zip", "");
    const std::string torn = folder_.Write(orders + "2026/10/ODRA~7~a~20261022T000002.zip", "torn");

    const std::string listed = Run("laptop-1", {"order", "list", Laptop().Psd(), "--json"});
    EXPECT_EQ(JsonAt(listed, "$[0].archive"), newer);
    EXPECT_EQ(JsonAt(listed, "$[0].order"), "7");
    EXPECT_EQ(JsonAt(listed, "$[1].archive"), older);
    EXPECT_EQ(JsonAt(listed, "$[2].order") + " " + JsonAt(listed, "$[2].savedOn"), "A~7 2026-10-22T00:00:02Z");
    EXPECT_EQ(JsonAt(listed, "$[3].order"), "");
    EXPECT_NE(Run("main", {"order", "list", dealer_.Main().Psd()}).find("no order backups"), std::string::npos);
    Run("main", {"order", "list"}, 1);
    Run("main", {"order", "list", dealer_.Main().Psd(), "--folder", folder_.Path()}, 2);

    const std::string shown = Run("laptop-1", {"order", "show", newer, "--json"});
    EXPECT_EQ(JsonAt(shown, "$.order.Notes") + JsonAt(shown, "$.items[0].Width"), "second900");
    EXPECT_NE(Run("laptop-1", {"order", "show", older}).find("The order has no items."), std::string::npos);
    const std::string file = Run("laptop-1", {"file", "show", newer, "--json"});
    EXPECT_EQ(JsonAt(file, "$.tables[1].table") + JsonAt(file, "$.tables[1].records"), "OrderItems1");

    const auto isRefused = [&](const std::string& name, const std::string& data, const std::string& reason) {
        folder_.Write(name + "/suz1.xml", data);
        PackFolder(folder_ / name, folder_ / (name + ".zip"));
        Run("laptop-1", {"order", "restore", folder_ / (name + ".zip"), Laptop().Psd()}, 1);
        EXPECT_NE(failure_.find(reason), std::string::npos) << failure_;
    };
    const std::string head = "<Exchange Version=\"1\" From=\"X\"><Table Name=\"Orders\">";
    const std::string order = "<Record><UniqueID>O-7</UniqueID><Notes>bad</Notes></Record>";
    isRefused("none", head + "</Table></Exchange>", "0 orders");
    isRefused("two", head + order + order + "</Table></Exchange>", "2 orders");
    isRefused("more",
              head + order +
                  "</Table><Table Name=\"Customers\"><Record><UniqueID>C</UniqueID></Record>"
                  "</Table></Exchange>",
              "more than an order");
    isRefused("foreign",
              head + order +
                  "</Table><Table Name=\"OrderItems\"><Record><UniqueID>I-1</UniqueID>"
                  "<OrderUniqueID>O-8</OrderUniqueID></Record></Table></Exchange>",
              "another order");
    isRefused("deletes",
              "<Exchange Version=\"1\"><Table Name=\"Orders\" Deleted=\"1\">" + order + "</Table></Exchange>",
              "more than an order");
    isRefused("torn", head + order, "");
    EXPECT_EQ(Laptop().Value("SELECT Notes FROM Orders"), "second");
    Run("laptop-1", {"order", "show", torn}, 1);
}

} // namespace
} // namespace qndr::control
