#include "suite/engine/import.h"

#include "services/failure.h"
#include "suite/engine/import_applier.h"
#include "suite/engine/import_pipe.h"

namespace qndr::suite {

namespace {

/// New rows come in random order of their UniqueIDs; where the index does not fit in memory, its pages are written
/// again and again. 24 MiB hold the index of half a million rows.
class ImportCache {
  public:
    explicit ImportCache(const SqliteConnection& connection)
        : connection_(connection), usual_(connection.Number("PRAGMA cache_size")) {
        connection_.Execute("PRAGMA cache_size = -24576");
    }
    ~ImportCache() {
        const std::string back = "PRAGMA cache_size = " + std::to_string(usual_);
        sqlite3_exec(connection_.Handle(), back.c_str(), nullptr, nullptr, nullptr);
        sqlite3_db_release_memory(connection_.Handle());
    }
    ImportCache(const ImportCache&) = delete;
    ImportCache& operator=(const ImportCache&) = delete;

  private:
    const SqliteConnection& connection_;
    std::int64_t usual_;
};

} // namespace

ImportResult Import(const SqliteConnection& connection, const std::string& path,
                    ImportReader::UnknownTables unknownTables) {
    ImportReader reader(path, unknownTables);
    ImportPipe pipe(reader);
    const ImportBatch* batch = pipe.Next();
    if (batch == nullptr) {
        throw services::Failure("the file is empty");
    }
    const ImportCache cache(connection);
    ImportApplier applier(connection, batch->from);
    for (; batch != nullptr; batch = pipe.Next()) {
        applier.Apply(*batch);
    }
    applier.Commit();
    return applier.Result();
}

} // namespace qndr::suite
