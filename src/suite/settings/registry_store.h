#pragma once

#include "services/platform.h"
#include "services/registry_tools.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qndr::suite {

/// The kinds of values. Stored: never change.
enum class RegistryKind { Text = 1, Number = 4 };

struct RegistryValue {
    std::int32_t hive = 0;
    std::string key;
    std::string name;
    RegistryKind kind = RegistryKind::Text;
    std::string text; ///< a number in decimal
};

/// The registry where the platform has none: one SQLite file, for all processes of the user. A read makes nothing,
/// the first write makes the file with its folders. The file may be deleted or exchanged at any time. A damaged
/// file gives GetString its default; all other operations raise. Letter case: ASCII letters only.
class RegistryStore : public services::RegistryTools {
  public:
    RegistryStore(std::string file, const services::Clock& clock);

    /// A number comes back in decimal.
    std::string GetString(std::int32_t hive, const std::string& key, const std::string& name,
                          const std::string& fallback) override;
    /// Takes a text that is a number, too.
    std::int32_t GetLong(std::int32_t hive, const std::string& key, const std::string& name,
                         std::int32_t fallback) override;
    void SetString(std::int32_t hive, const std::string& key, const std::string& name,
                   const std::string& value) override;
    void SetLong(std::int32_t hive, const std::string& key, const std::string& name, std::int32_t value) override;

    /// All values whose key begins with `keyStart`, in the order of hive, key and name; for administration. Raises
    /// when the store cannot be read.
    std::vector<RegistryValue> List(const std::string& keyStart);
    /// The kind of one value, nothing when it is missing. Raises when the store cannot be read.
    std::optional<RegistryKind> Kind(std::int32_t hive, const std::string& key, const std::string& name);

  private:
    struct Store {
        std::uint64_t device;
        std::uint64_t number;
        std::unique_ptr<sql::Connection> connection;
        sql::Statement find;
    };
    struct Found {
        RegistryKind kind;
        std::string text;
    };
    /// Null when nothing has been written yet.
    Store* StoreForReading();
    Store& StoreForWriting();
    std::optional<Found> Find(std::int32_t hive, const std::string& key, const std::string& name);
    void Write(std::int32_t hive, const std::string& key, const std::string& name, RegistryKind kind,
               const std::string& text);

    std::string file_;
    const services::Clock& clock_;
    std::unique_ptr<Store> store_;
};

} // namespace qndr::suite
