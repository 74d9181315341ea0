#include "suite/settings/registry_store.h"

#include "services/failure.h"
#include "suite/computer/file_calls.h"

#include <charconv>
#include <filesystem>

namespace qndr::suite {
namespace {

using services::Failure;

constexpr std::int32_t kBusyMilliseconds = 10'000;

constexpr const char* kMakeTable = "CREATE TABLE IF NOT EXISTS Registry ("
                                   "Hive INTEGER NOT NULL, "
                                   "KeyPath TEXT NOT NULL COLLATE NOCASE, "
                                   "ValueName TEXT NOT NULL COLLATE NOCASE, "
                                   "Kind INTEGER NOT NULL, "
                                   "Value TEXT NOT NULL, "
                                   "PRIMARY KEY (Hive, KeyPath, ValueName)) WITHOUT ROWID";
constexpr const char* kHasTable = "SELECT COUNT(*) FROM sqlite_schema WHERE type = 'table' AND name = 'Registry'";
constexpr const char* kFind = "SELECT Kind, Value FROM Registry WHERE Hive = ? AND KeyPath = ? AND ValueName = ?";
constexpr const char* kWrite =
    "INSERT INTO Registry (Hive, KeyPath, ValueName, Kind, Value) VALUES (?, ?, ?, ?, ?) "
    "ON CONFLICT (Hive, KeyPath, ValueName) DO UPDATE SET Kind = excluded.Kind, Value = excluded.Value";
constexpr const char* kList = "SELECT Hive, KeyPath, ValueName, Kind, Value FROM Registry "
                              "WHERE substr(KeyPath, 1, length(?1)) = ?1 COLLATE NOCASE "
                              "ORDER BY Hive, KeyPath, ValueName";

RegistryKind ToKind(std::int64_t number) {
    if (number == static_cast<std::int64_t>(RegistryKind::Text)) {
        return RegistryKind::Text;
    }
    if (number == static_cast<std::int64_t>(RegistryKind::Number)) {
        return RegistryKind::Number;
    }
    throw Failure("the settings hold a value of the unknown kind " + std::to_string(number));
}

/// Ends the reading of a statement that is used again; while it is open it would hold back the file's log.
class ReadingEnd {
  public:
    explicit ReadingEnd(sql::Statement& statement) : statement_(statement) {}
    ~ReadingEnd() { statement_.Reset(); }
    ReadingEnd(const ReadingEnd&) = delete;
    ReadingEnd& operator=(const ReadingEnd&) = delete;

  private:
    sql::Statement& statement_;
};

} // namespace

RegistryStore::RegistryStore(std::string file, const services::Clock& clock)
    : file_(std::move(file)), clock_(clock) {
}

RegistryStore::Store* RegistryStore::StoreForReading() {
    const std::optional<FileFacts> facts = ReadFileFacts(file_);
    if (store_ && facts && facts->device == store_->device && facts->number == store_->number) {
        return store_.get();
    }
    store_.reset();
    // An empty file, or one without the table, is what the first write of another process begins with.
    if (!facts || (facts->file && facts->size == 0)) {
        return nullptr;
    }
    auto connection = sql::Open(file_, clock_, sql::Missing::Refuse);
    connection->SetBusyTimeout(kBusyMilliseconds);
    if (connection->Number(kHasTable) == 0) {
        return nullptr;
    }
    sql::Statement find = connection->Prepare(kFind);
    store_.reset(new Store{facts->device, facts->number, std::move(connection), std::move(find)});
    return store_.get();
}

RegistryStore::Store& RegistryStore::StoreForWriting() {
    if (Store* store = StoreForReading()) {
        return *store;
    }
    const std::string folder = std::filesystem::path(file_).parent_path().string();
    if (!folder.empty() && !NameIsTaken(folder)) {
        EnsurePrivateFolder(folder);
    }
    {
        const auto connection = sql::Open(file_, clock_, sql::Missing::Create);
        connection->Execute(kMakeTable);
    }
    Store* store = StoreForReading();
    if (store == nullptr) {
        throw Failure("the settings file '" + file_ + "' vanished while it was made");
    }
    return *store;
}

std::optional<RegistryStore::Found> RegistryStore::Find(std::int32_t hive, const std::string& key,
                                                        const std::string& name) {
    Store* store = StoreForReading();
    if (store == nullptr) {
        return std::nullopt;
    }
    const ReadingEnd end(store->find);
    store->find.Bind(1, static_cast<std::int64_t>(hive));
    store->find.Bind(2, key);
    store->find.Bind(3, name);
    if (!store->find.Step()) {
        return std::nullopt;
    }
    return Found{ToKind(store->find.Integer(0)), std::string(store->find.Text(1))};
}

std::string RegistryStore::GetString(std::int32_t hive, const std::string& key, const std::string& name,
                                     const std::string& fallback) {
    try {
        const std::optional<Found> found = Find(hive, key, name);
        return found ? found->text : fallback;
    } catch (const Failure&) {
        return fallback;
    }
}

std::int32_t RegistryStore::GetLong(std::int32_t hive, const std::string& key, const std::string& name,
                                    std::int32_t fallback) {
    const std::optional<Found> found = Find(hive, key, name);
    if (!found) {
        return fallback;
    }
    std::int32_t number = 0;
    const char* end = found->text.data() + found->text.size();
    const auto [stop, error] = std::from_chars(found->text.data(), end, number);
    if (error != std::errc() || stop != end) {
        throw Failure("the setting '" + name + "' is no number: '" + found->text + "'");
    }
    return number;
}

void RegistryStore::SetString(std::int32_t hive, const std::string& key, const std::string& name,
                              const std::string& value) {
    Write(hive, key, name, RegistryKind::Text, value);
}

void RegistryStore::SetLong(std::int32_t hive, const std::string& key, const std::string& name,
                            std::int32_t value) {
    Write(hive, key, name, RegistryKind::Number, std::to_string(value));
}

void RegistryStore::Write(std::int32_t hive, const std::string& key, const std::string& name, RegistryKind kind,
                          const std::string& text) {
    sql::Statement write = StoreForWriting().connection->Prepare(kWrite);
    write.Bind(1, static_cast<std::int64_t>(hive));
    write.Bind(2, key);
    write.Bind(3, name);
    write.Bind(4, static_cast<std::int64_t>(kind));
    write.Bind(5, text);
    write.Step();
}

std::vector<RegistryValue> RegistryStore::List(const std::string& keyStart) {
    std::vector<RegistryValue> values;
    const Store* store = StoreForReading();
    if (store == nullptr) {
        return values;
    }
    sql::Statement list = store->connection->Prepare(kList);
    list.Bind(1, keyStart);
    while (list.Step()) {
        values.push_back({static_cast<std::int32_t>(list.Integer(0)), std::string(list.Text(1)),
                          std::string(list.Text(2)), ToKind(list.Integer(3)), std::string(list.Text(4))});
    }
    return values;
}

std::optional<RegistryKind> RegistryStore::Kind(std::int32_t hive, const std::string& key,
                                                const std::string& name) {
    const std::optional<Found> found = Find(hive, key, name);
    return found ? std::optional(found->kind) : std::nullopt;
}

} // namespace qndr::suite
