#include "changeset_peer.h"

#include "services/failure.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace qndr::bench {
namespace {

using services::Failure;

void Demand(bool done, const std::string& what) {
    if (!done) {
        throw Failure("the peer failed: " + what);
    }
}

/// The seconds since the last call.
class Lap {
  public:
    double Take() {
        const auto now = std::chrono::steady_clock::now();
        return std::chrono::duration<double>(now - std::exchange(began_, now)).count();
    }

  private:
    std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

/// The peer is the database's own way of carrying changes.
sqlite3* HandleOf(const sql::Connection& connection) {
    return dynamic_cast<const sql::SqliteConnection&>(connection).Handle();
}

/// Any conflict ends the run: a peer that leaves changes out would be compared with more than it does.
int RefuseConflict(void*, int, sqlite3_changeset_iter*) {
    return SQLITE_CHANGESET_ABORT;
}

void Apply(const sql::Connection& copy, std::string& changeset) {
    sql::Transaction transaction(copy, sql::Transaction::Kind::Write);
    Demand(sqlite3changeset_apply(HandleOf(copy), static_cast<int>(changeset.size()), changeset.data(), nullptr,
                                  &RefuseConflict, nullptr) == SQLITE_OK,
           "the changeset does not fit");
    transaction.Commit();
}

} // namespace

ChangeRecorder::ChangeRecorder(const sql::Connection& connection, const std::vector<std::string>& tables)
    : session_(nullptr, &sqlite3session_delete) {
    sqlite3_session* session = nullptr;
    Demand(sqlite3session_create(HandleOf(connection), "main", &session) == SQLITE_OK, "no session");
    session_.reset(session);
    for (const std::string& table : tables) {
        Demand(sqlite3session_attach(session, table.c_str()) == SQLITE_OK, "the session does not take " + table);
    }
}

std::string ChangeRecorder::Changeset() const {
    int size = 0;
    void* bytes = nullptr;
    Demand(sqlite3session_changeset(session_.get(), &size, &bytes) == SQLITE_OK, "no changeset");
    const std::unique_ptr<void, void (*)(void*)> owner(bytes, &sqlite3_free);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

ChangesetPeer::ChangesetPeer(const std::string& folder, const std::string& company, const services::Clock& clock)
    : out_(folder + "/out"), folder_(folder + "/shared"), in_(folder + "/in"), database_(folder + "/copy.db"),
      clock_(clock) {
    for (const std::string& each : {out_, folder_, in_}) {
        std::filesystem::create_directories(each);
    }
    std::filesystem::copy_file(company, database_);
    const sql::SqliteConnection copy(database_, clock_, sql::Missing::Refuse);
    std::string drops;
    auto triggers = copy.Prepare("SELECT name FROM sqlite_schema WHERE type = 'trigger'");
    while (triggers.Step()) {
        drops.append("DROP TRIGGER \"").append(triggers.Text(0)).append("\";");
    }
    triggers.Reset();
    copy.ExecuteScript(drops);
}

void ChangesetPeer::Make(const ChangeRecorder& recorder, PeerTimes& times) const {
    Lap lap;
    std::ofstream file(out_ + "/changes.dat", std::ios::binary);
    file << recorder.Changeset();
    file.close();
    Demand(!file.fail(), "the changeset cannot be written");
    times.make = lap.Take();
}

void ChangesetPeer::Carry(services::ObjectFactory& objects, services::FileTools& fileTools,
                          PeerTimes& times) const {
    Lap lap;
    const std::string packed = in_ + "/packed.zip";
    const auto zip = objects.CreateZipArchive();
    Demand(zip->NewZip(packed) == 1 && zip->AppendFiles(out_ + "/*.*", 0) == 1 && zip->WriteZipAndClose() == 1,
           zip->LastErrorText());
    times.pack = lap.Take();
    const std::string sent = folder_ + "/sent.zip";
    Demand(fileTools.CopyFile(packed, sent, false), "the archive cannot be copied");
    times.drop = lap.Take();
    const auto arrived = objects.CreateZipArchive();
    Demand(arrived->OpenZip(sent) == 1, arrived->LastErrorText());
    const auto entry = arrived->GetEntryByName("changes.dat");
    Demand(entry && entry->Extract(in_) == 1, arrived->LastErrorText());
    arrived->CloseZip();
    std::ifstream file(in_ + "/changes.dat", std::ios::binary);
    std::string changeset{std::istreambuf_iterator<char>(file), {}};
    times.unpack = lap.Take();
    {
        const sql::SqliteConnection copy(database_, clock_, sql::Missing::Refuse);
        Apply(copy, changeset);
        times.apply = lap.Take();
    }
    times.close = lap.Take();
    for (const std::string& path : {out_ + "/changes.dat", packed, sent, in_ + "/changes.dat"}) {
        std::filesystem::remove(path);
    }
}

} // namespace qndr::bench
