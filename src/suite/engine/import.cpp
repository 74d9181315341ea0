#include "suite/engine/import.h"

#include "suite/engine/import_applier.h"
#include "suite/exchange/import_pipe.h"

namespace qndr::suite {

namespace {

/// Holds most of the index of half a million UniqueIDs, or the pages that ten thousand scattered changes touch:
/// pages that do not fit are written to the log early, once for each change. With a row as large as one may be on
/// its way besides, the agent stays within 64 MiB.
constexpr std::int64_t ImportCacheKibibytes = 24576;

} // namespace

ImportResult Import(const sql::Connection& connection, const std::string& path,
                    ImportReader::UnknownTables unknownTables, Arrival arrival) {
    ImportReader reader(path, unknownTables);
    ImportPipe pipe(reader);
    const ImportBatch* batch = pipe.Next();
    if (batch == nullptr) {
        throw FileRefused("the file is empty");
    }
    const std::unique_ptr<sql::Measure> manyRows = connection.PrepareForManyRows(ImportCacheKibibytes);
    ImportApplier applier(connection, *batch, arrival);
    if (!applier.Begin(batch->from, batch->fileID)) {
        applier.Commit();
        return {};
    }
    for (; batch != nullptr; batch = pipe.Next()) {
        applier.Apply(*batch);
    }
    const ImportResult result = applier.Result();
    applier.Commit();
    return result;
}

} // namespace qndr::suite
