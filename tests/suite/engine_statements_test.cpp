#include "suite/engine/import.h"
#include "suite/engine_fixture.h"

#include <gtest/gtest.h>

namespace qndr::suite {
namespace {

/// A database behind which another one stands: counts what the engine asks it for.
class CountingConnection : public sql::Connection {
  public:
    explicit CountingConnection(const sql::Connection& target) : target_(target) {}

    int Prepared() const { return prepared_; }

    const std::string& Path() const override { return target_.Path(); }
    void SetBusyTimeout(std::int32_t /*milliseconds*/) override {}
    sql::Statement Prepare(std::string_view sql) const override {
        ++prepared_;
        return target_.Prepare(sql);
    }
    void ExecuteScript(const std::string& sql) const override { target_.ExecuteScript(sql); }
    std::vector<std::string> SplitScript(const std::string& sql) const override {
        return target_.SplitScript(sql);
    }
    std::unique_ptr<sql::Fence> MakeFence() const override { return target_.MakeFence(); }
    std::unique_ptr<sql::StatementTime> LimitTime(const sql::StatementLimits& limits) const override {
        return target_.LimitTime(limits);
    }
    std::vector<std::string> ColumnsOf(std::string_view table) const override { return target_.ColumnsOf(table); }
    std::string UpsertText(std::string_view table, std::string_view key,
                           const std::vector<std::pair<std::string_view, int>>& columns) const override {
        return target_.UpsertText(table, key, columns);
    }
    std::vector<std::string> TriggersOf(std::string_view table) const override {
        return target_.TriggersOf(table);
    }
    void TurnTriggers(bool on) const override { target_.TurnTriggers(on); }
    bool IsInTransaction() const override { return target_.IsInTransaction(); }
    // Without the measures that only spare time the engine does the same.
    std::unique_ptr<sql::Measure> PrepareForManyRows(std::int64_t /*kibibytes*/) const override { return nullptr; }
    std::unique_ptr<sql::Measure> LimitCache(std::int64_t /*kibibytes*/) const override { return nullptr; }
    void WriteCacheOut() const override {}
    void Begin(bool writes, sql::LockWait::Patience patience) const override { target_.Begin(writes, patience); }
    void Commit() const override { target_.Commit(); }
    void Rollback() const noexcept override { target_.Rollback(); }

  private:
    const sql::Connection& target_;
    mutable int prepared_ = 0;
};

TEST(EngineStatements, AreAsManyForThousandRecordsAsForTen) {
    const TestFolder folder;
    const std::string file = folder.Path("data.xml");
    std::vector<int> prepared;
    for (const int records : {10, 1000}) {
        const std::string id = std::to_string(records);
        EngineCompany main(folder, id + MainID, 1);
        std::string rows;
        for (int record = 0; record < records; ++record) {
            rows += "<Record" + (" Origin=\"" + LaptopID + "\" OriginID=\"" + std::to_string(record + 1)) +
                    "\"><UniqueID>U" + std::to_string(record) + "</UniqueID><Name>new</Name></Record>";
        }
        WriteFile(file, Exchange("<Table Name=\"PhoneLabels\">" + rows + "</Table>", LaptopID));
        const CountingConnection connection(main.Connection());
        EXPECT_EQ(Import(connection, file, ImportReader::UnknownTables::PassOver).records, records);
        EXPECT_EQ(main.Number("SELECT COUNT(*) FROM AuditLog WHERE Origin = '" + LaptopID + "'"), records);
        prepared.push_back(connection.Prepared());
    }
    EXPECT_EQ(prepared[0], prepared[1]);
}

} // namespace
} // namespace qndr::suite
