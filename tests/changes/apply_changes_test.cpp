#include "changes/apply_changes_from_main.h"
#include "changes/apply_changes_from_roaming_workstations.h"
#include "changes/changes_test.h"
#include "shared/formatting.h"
#include "shared/text.h"
#include "syncfiles/query_rows.h"

namespace qndr::testing {
namespace {

class ApplyChangesTest : public TwinsTest {
  protected:
    ApplyChangesTest() {
        Sql("UPDATE RoamingWorkstations SET NextSequenceFromRoaming = 5");
        Sql("UPDATE Company SET NextSequenceFromMain = 5");
    }
    /// What the step logs behind the number of files.
    Lines Apply(int files = 1) {
        Lines lines = IsMain() ? RunForOne(ApplyChangesFromRoamingWorkstations, "applying changes from")
                               : Run(ApplyChangesFromMain);
        EXPECT_EQ(lines.at(0), std::to_string(files) + " sync files were found for processing.");
        lines.erase(lines.begin());
        return lines;
    }
    std::string Drop(int sequence, const std::string& keys = "") {
        return DropSyncFile(name, "Sequence=" + std::to_string(sequence) + "\r\nFrom=" + senderId +
                                      "\r\nFromAppVersion=5.0.7\r\n" + keys);
    }
    std::string Ignored(int sequence, int expected) const {
        return Pick(FormatString("The sync file '{0}' be ignored because its sequence, {1}, is not what was "
                                 "expected - {2}",
                                 name, sequence, expected),
                    FormatString("The sync file '{0}' will be ignored because its sequence, {1} is not the next "
                                 "sequence to be processed - {2}",
                                 name, sequence, expected));
    }
    /// The expected sequence and what moves with it.
    std::string Numbers() {
        return Value(Pick("SELECT group_concat(NextSequenceFromRoaming || ',' || coalesce(LastReceivedFrom, '') "
                          "|| ',' || coalesce(LastKnownAppVersion, ''), ' ') FROM RoamingWorkstations",
                          "SELECT NextSequenceFromMain || ',' || SyncState || ',' || LastAuditID FROM Company"));
    }
    std::int64_t AuditRows() { return Company().ExecuteScaler("SELECT count(*) FROM AuditLog").ToLong(); }

    const std::string ownId = Pick(MainID, RoamingID);
    const std::string senderId = Pick(RoamingID, MainID);
    const std::string name = ownId + "~a~x.zip";
    const std::string willBe = "The sync file '" + name + "' will be processed.";
    const std::string was = "The sync file '" + name + "' was processed.";
    const std::string marked = "The sync file '" + name + "' has been marked to delete.";
    const std::string updateFailed =
        "Error: There was a problem updating the " +
        Pick("RoamingWorkstations table when processing changes from a Roaming Workstation.",
             "Company table when processing changes from the main system.") +
        " More information to follow.";
};
INSTANTIATE_TEST_SUITE_P(OnMainAndRoaming, ApplyChangesTest, ::testing::Values(1, 2));

TEST_P(ApplyChangesTest, OnlyTheExpectedSequenceIsTaken) {
    for (const int sequence : {4, 6, -1}) {
        Drop(sequence);
        EXPECT_EQ(Apply(), (Lines{willBe, Ignored(sequence, 5)}));
        EXPECT_TRUE(std::filesystem::remove(Path("Sync/" + name))) << "the file stays";
    }
    EXPECT_EQ(Numbers(), Pick("5,,", "5,4,0"));
    Drop(5);
    EXPECT_EQ(Apply(), (Lines{willBe, was, marked}));
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    EXPECT_EQ(Numbers(), Pick("6,20261122 19:08:52,5.0.7", "6,4,0"));
    Drop(5);
    EXPECT_EQ(Apply(), (Lines{willBe, Ignored(5, 6)})) << "a duplicate";
    gate.Before("ZipArchive.CloseZip", [&] { gate.Before("Database.ExecuteScaler", Break); });
    EXPECT_EQ(Apply(), Lines{willBe}) << "an expected number that cannot be read is not shown either";
    EXPECT_EQ(engine->imports.size(), 1U);
    EXPECT_EQ(activity.texts.back(),
              Pick("Applying changes from roaming workstation 'Laptop'.", "Applying changes from main."));
    EXPECT_EQ(Events(), "");
}

TEST_P(ApplyChangesTest, FilesAreTakenInTheOrderOfTheListing) {
    const auto dropInOrder = [&](int first, int second) {
        WriteText(Path("Sync/" + ownId + "~b~x.zip"), "");
        WriteText(Path("Sync/" + ownId + "~c~x.zip"), "");
        const Lines listed = context.services.pathTools.FindFiles(Path("Sync"), "*.zip", false);
        for (const int sequence : {first, second}) {
            const std::string number = std::to_string(sequence);
            Pack(Path(number),
                 {{"id.dat", "[GENERAL]\r\nFrom=" + senderId + "\r\nSequence=" + number}, {"data.xml", number}});
            WriteText(listed.at(sequence == first ? 0 : 1), ReadText(Path(number)));
        }
    };
    dropInOrder(6, 5);
    Apply(2);
    EXPECT_EQ(engine->imports, Lines{"5"});
    Apply();
    EXPECT_EQ(engine->imports, (Lines{"5", "6"}));
    dropInOrder(7, 8);
    Apply(2);
    EXPECT_EQ(engine->imports, (Lines{"5", "6", "7", "8"})) << "the expected number is read for each file";
}

TEST_P(ApplyChangesTest, FileStaysUntilItsImportAndItsUpdateWereDone) {
    Drop(5);
    gate.RefuseOnly("ZipEntry.Extract", 2);
    EXPECT_EQ(Apply().size(), 3U) << "what it could not unpack, and why";
    EXPECT_EQ(Numbers(), Pick("5,,", "5,4,0"));
    gate.Before("Database.ExecuteNonQuery", Break);
    EXPECT_NE(Apply().back(), marked) << "an update whose end is not known";
    RefuseUpdates(Pick("ON RoamingWorkstations", "ON Company"));
    gate.Before("Database.ExecuteNonQuery", [&] { time.Advance(10'000); });
    EXPECT_EQ(Apply(),
              (Lines{willBe, was, updateFailed,
                     Pick("UPDATE RoamingWorkstations SET NextSequenceFromRoaming = NextSequenceFromRoaming + 1, "
                          "LastReceivedFrom = '20261122 19:09:02' WHERE ID = 1",
                          "UPDATE Company SET NextSequenceFromMain = NextSequenceFromMain + 1"),
                     "in use"}));
    AllowUpdates();
    engine->importSucceeds = false;
    EXPECT_EQ(Apply().back(), marked) << "data that the engine refuses is done";
    EXPECT_EQ(engine->imports.size(), 3U);
    EXPECT_EQ(Numbers().substr(0, 2), "6,");
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_P(ApplyChangesTest, FilesOfOthersAreNotOpenedAndBracesDoNoHarm) {
    Sql("UPDATE Company SET UniqueID = '{" + OtherID + "}'");
    Drop(5);
    EXPECT_EQ(Apply(), Lines{});
    EXPECT_EQ(gate.Count("ZipArchive.OpenZip"), 0);
    std::filesystem::rename(Path("Sync/" + name), Path("Sync/{" + qndr::ToLower(OtherID) + "}~a~x.zip"));
    EXPECT_EQ(Apply().size(), 3U);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    gate.Before("Database.ExecuteScaler", Break);
    const std::string noIdentity =
        Pick("Error: Unable to process changes from the Roaming Workstation becuase the Unique ID of the main "
             "company could not be read.",
             "Error: Unable to process sync sync changes from the main system becuase the Unique ID of the "
             "roaming company could not be read.");
    EXPECT_EQ(IsMain() ? RunForOne(ApplyChangesFromRoamingWorkstations, "applying changes from")
                       : Run(ApplyChangesFromMain),
              Lines{noIdentity});
}

TEST_P(ApplyChangesTest, FileWithoutADescriptorHasNoSenderAndTheSequenceZero) {
    Pack(Path("Sync/" + name), {{"data.xml", "data"}});
    const std::string unread =
        "Error: Unable to read the sync file '" + name + "' becuase its id.dat file could not be found.";
    EXPECT_EQ(Apply(), IsMain() ? Lines{unread} : (Lines{willBe, unread, Ignored(0, 5)}));
    Sql("UPDATE RoamingWorkstations SET NextSequenceFromRoaming = 0");
    Sql("UPDATE Company SET NextSequenceFromMain = 0");
    EXPECT_EQ(Apply(), IsMain() ? Lines{unread} : (Lines{willBe, unread, was, marked}));
}

class ApplyChangesFromRoamingTest : public ApplyChangesTest {};
INSTANTIATE_TEST_SUITE_P(OnMain, ApplyChangesFromRoamingTest, ::testing::Values(1));

TEST_P(ApplyChangesFromRoamingTest, FilesAreTakenUnderTheirOwnWorkstation) {
    Sql("UPDATE RoamingWorkstations SET SyncState = 6");
    AddWorkstation("OTHER", 4);
    AddWorkstation("THIRD", 4);
    AddWorkstation("RESET", 5);
    DropSyncFile(name, "Sequence=0\r\nFrom=third\r\n");
    DropSyncFile(MainID + "~b~x.zip", "Sequence=5\r\nFrom=" + RoamingID + "\r\n");
    DropSyncFile(MainID + "~c~x.zip", "Sequence=0\r\nFrom=RESET\r\n");
    const std::string start = "Start applying changes from roaming workstation 'Laptop'.";
    const std::string finish = "Finish applying changes from roaming workstation 'Laptop'.";
    const std::string found = "3 sync files were found for processing.";
    EXPECT_EQ(Run(ApplyChangesFromRoamingWorkstations),
              (Lines{start, found, finish, start, found, willBe, was, marked, finish}));
    EXPECT_EQ(Numbers(), "5,, 0,, 1,20261122 19:08:52, 0,,");
    EXPECT_EQ(FilesBelow("Sync").size(), 2U) << "those of the other states wait for their own steps";
}

TEST_P(ApplyChangesFromRoamingTest, StateComesFromTheRecord) {
    Sql("UPDATE RoamingWorkstations SET SyncState = 5");
    const QueryRows rows(context, "SELECT * FROM RoamingWorkstations");
    Sql("UPDATE RoamingWorkstations SET SyncState = 4");
    ApplyChangesFromRoamingWorkstation(context, rows.Row(0).get());
    EXPECT_EQ(TakeLog().back(),
              "Changes from this Roaming Workstation will not be processed because it has not done an initial "
              "sync.");
}

class ApplyChangesFromMainTest : public ApplyChangesTest {
  protected:
    void SetState(int state) { Sql("UPDATE Company SET SyncState = " + std::to_string(state)); }
    void DropReset() {
        SetState(6);
        Drop(5, "IsSyncReset=1\r\n");
        Audit("Terms", 1, 1);
    }
};
INSTANTIATE_TEST_SUITE_P(OnRoaming, ApplyChangesFromMainTest, ::testing::Values(2));

/// Notes the statements on their way to the second database object of the company.
class NotingLibrary : public services::SharedCodeLibraryWrapper, private services::SqlConnection {
  public:
    NotingLibrary(std::unique_ptr<SharedCodeLibrary> target, Lines& statements)
        : SharedCodeLibraryWrapper(std::move(target), nullptr), statements_(statements) {}
    services::SqlConnection* QNDRSQL() override {
        real_ = SharedCodeLibraryWrapper::QNDRSQL();
        return this;
    }

  private:
    std::int32_t ExecuteNonQuery(const services::Statement& statement) override {
        statements_.push_back(statement.Text());
        return real_->ExecuteNonQuery(statement);
    }
    void PreTerminate() override { real_->PreTerminate(); }
    Lines& statements_;
    services::SqlConnection* real_ = nullptr;
};

TEST_P(ApplyChangesFromMainTest, StatesOtherThanReadyAndResetPendingRefuse) {
    Drop(5);
    for (const int state : {0, 1, 2, 3, 5}) {
        SetState(state);
        EXPECT_EQ(
            Apply(),
            Lines{"Changes from the main system will be ignored because an initial sync has not be performed."});
    }
    EXPECT_EQ(gate.Count("ZipArchive.OpenZip"), 0);
    SetState(6);
    Apply();
    EXPECT_EQ(Numbers(), "6,6,0") << "a file without the mark of a reset is applied like any other";
}

TEST_P(ApplyChangesFromMainTest, ResetClearsImportsAndCountsTheLogAsSent) {
    DropReset();
    Sql("INSERT INTO Discounts (UniqueID) VALUES ('D')");
    Sql("INSERT INTO Terms (UniqueID) VALUES ('T')");
    Lines cleared;
    context.Library = std::make_unique<NotingLibrary>(std::move(context.Library), cleared);
    gate.Before("Engine.ImportFile", [&] {
        EXPECT_EQ(AuditRows(), 0) << "the deletions are not sent to main";
        Audit("Terms", 1, 1);
    });
    EXPECT_EQ(Apply(), (Lines{willBe, was, marked}));
    Lines expected;
    for (const char* table :
         {"FieldMeasureCriteria", "RequireDepositCriteria", "CompanySetup", "CompanyFeatures",
          "OptionDetailSettings", "OptionDefaults", "OptionCallouts", "Discounts", "ProductTags",
          "EmployeeSecurityRoles", "Reports", "SetupOptions", "AdditionalCharges", "EmailTemplates",
          "SecurityRoleAccess", "EmailLabels", "PhoneLabels", "cacheProductStyles", "AuditLog"}) {
        expected.push_back("DELETE FROM " + std::string(table));
        EXPECT_NE(Company().ExecuteNonQuery(services::Statement(expected.back() + " WHERE 1 = 0")), -1) << table;
    }
    EXPECT_EQ(cleared, expected);
    EXPECT_EQ(gate.Count("SqlConnection.PreTerminate"), 1);
    EXPECT_EQ(Value("SELECT (SELECT count(*) FROM Discounts) || (SELECT count(*) FROM Terms)"), "01");
    EXPECT_EQ(Numbers(), "6,4,5");
    EXPECT_EQ(Events(), "Sync reset complete./2");
}

TEST_P(ApplyChangesFromMainTest, ResetThatCannotBeUnpackedIsRepeatedFromItsStart) {
    DropReset();
    gate.RefuseOnly("ZipEntry.Extract", 2);
    Apply();
    EXPECT_EQ(AuditRows(), 0);
    EXPECT_EQ(Numbers(), "5,6,0");
    EXPECT_EQ(Events(), "");
    Audit("Terms", 1, 1);
    engine->importSucceeds = false;
    EXPECT_EQ(Apply().back(), marked);
    EXPECT_EQ(AuditRows(), 0);
    EXPECT_EQ(Numbers(), "6,4,0") << "full data that the engine refuses ends the reset";
    EXPECT_EQ(Events(), "Sync reset complete./2");
}

TEST_P(ApplyChangesFromMainTest, NoFailureStopsAReset) {
    DropReset();
    gate.Refuse("SharedCodeLibrary.QNDRSQL", 1);
    RefuseUpdates("OF SyncState ON Company");
    EXPECT_EQ(Apply(), (Lines{willBe, was, updateFailed, "UPDATE Company SET LastAuditID = 1", "in use", marked}));
    EXPECT_EQ(AuditRows(), 1) << "nothing cleared, and imported all the same";
    EXPECT_EQ(Numbers(), "6,6,0");
    EXPECT_EQ(Events(), "Sync reset complete./2");
    AllowUpdates();
    Sql("UPDATE Company SET NextSequenceFromMain = 5");
    DropReset();
    gate.Before("SqlConnection.ExecuteNonQuery", Break);
    EXPECT_EQ(Apply(), (Lines{willBe, was, marked}));
    EXPECT_EQ(gate.Count("SqlConnection.ExecuteNonQuery"), 19);
    EXPECT_EQ(Numbers(), "6,4,2");
}

} // namespace
} // namespace qndr::testing
