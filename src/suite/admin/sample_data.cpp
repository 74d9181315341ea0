#include "suite/admin/sample_data.h"

#include "services/date.h"
#include "services/failure.h"
#include "suite/admin/sample_text.h"
#include "suite/schema/company_ddl.h"
#include "suite/schema/company_schema.h"
#include "text/sql_name.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

namespace qndr::suite {

namespace {

using services::Failure;

/// A small generator with the same numbers on every platform, which the standard's distributions do not give.
class SampleRandom {
  public:
    explicit SampleRandom(std::uint64_t seed) : state_(seed) {}

    std::uint64_t Next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }
    std::int64_t Below(std::int64_t limit) {
        return static_cast<std::int64_t>(Next() % static_cast<std::uint64_t>(limit));
    }

  private:
    std::uint64_t state_;
};

struct Share {
    std::string_view table;
    std::int64_t weight;
};

/// The tables that grow with the number of rows; all others stay small. The last one takes what rounding leaves
/// over.
constexpr std::array<Share, 18> LargeTables{{
    {"EmployeeActivity", 2},
    {"Customers", 10},
    {"GroupedCustomers", 3},
    {"CustomerActivity", 20},
    {"CustomerAddresses", 12},
    {"VendorActivity", 1},
    {"Products", 6},
    {"ProductVendors", 8},
    {"ProductActivity", 4},
    {"ProductTags", 4},
    {"OptionCallouts", 2},
    {"OptionDefaults", 4},
    {"Attachments", 1},
    {"Orders", 2},
    {"OrderItems", 6},
    {"PurchaseOrders", 1},
    {"PurchaseOrderItems", 3},
    {"OptionDetailSettings", 20},
}};

constexpr std::int64_t MostRowsOfSmallTable = 12;

bool IsFilled(const Table& table) {
    // The queues are filled by the agent of a workstation.
    return table.name.find("NumberSync") == std::string_view::npos;
}

std::map<std::string_view, std::int64_t> RowCounts(std::int64_t rows) {
    std::map<std::string_view, std::int64_t> counts;
    std::int64_t left = rows;
    for (const Table& table : AuditedTables()) {
        const bool large = std::any_of(LargeTables.begin(), LargeTables.end(),
                                       [&](const Share& share) { return share.table == table.name; });
        if (IsFilled(table) && !large) {
            counts[table.name] = std::clamp<std::int64_t>(rows / 500, 1, MostRowsOfSmallTable);
            left -= counts[table.name];
        }
    }
    std::int64_t weights = 0;
    for (const Share& share : LargeTables) {
        weights += share.weight;
    }
    const std::int64_t shared = std::max<std::int64_t>(left, 0);
    for (const Share& share : LargeTables) {
        counts[share.table] = std::max<std::int64_t>(shared * share.weight / weights, 1);
        left -= counts[share.table];
    }
    counts[LargeTables.back().table] += std::max<std::int64_t>(left, 0);
    return counts;
}

std::string Padded(std::int64_t number, int digits) {
    std::string text = std::to_string(number);
    return std::string(static_cast<std::size_t>(std::max(0, digits - static_cast<int>(text.size()))), '0') + text;
}

/// All data of one seed. A row's values follow from the seed, its table and its place in it, so that a reference
/// needs no look into the database.
class SampleCompany {
  public:
    SampleCompany(std::int64_t rows, std::uint32_t seed, Date now)
        : seed_(seed), now_(now), counts_(RowCounts(rows)) {}

    void Fill(const sql::Connection& connection, const Table& table) {
        std::string sql =
            "INSERT INTO " + text::QuotedName(table.name) + " (" + ExchangedColumnList(table) + ") VALUES (?";
        for (const Column& column : table.columns) {
            sql += column.local ? "" : ", ?";
        }
        sql::Statement insert = connection.Prepare(sql + ")");
        for (std::int64_t row = 0; row < counts_.at(table.name); ++row) {
            SampleRandom random = RandomOf(table.name, row);
            insert.Bind(1, UniqueID(table.name, row));
            int parameter = 1;
            for (const Column& column : table.columns) {
                if (!column.local) {
                    BindValue(insert, ++parameter, table, column, row, random);
                }
            }
            insert.Step();
            insert.Reset();
        }
    }

  private:
    SampleRandom RandomOf(std::string_view table, std::int64_t row) const {
        // FNV-1a of the table's name: std::hash differs from one library to the next.
        std::uint64_t hash = 0xCBF29CE484222325U;
        for (const char c : table) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
        }
        SampleRandom mixed(hash ^ (std::uint64_t{seed_} << 32U));
        return SampleRandom(mixed.Next() + static_cast<std::uint64_t>(row) * 0xD1342543DE82EF95U);
    }

    std::string UniqueID(std::string_view table, std::int64_t row) const {
        SampleRandom random = RandomOf(table, row);
        const std::uint64_t high = (random.Next() & ~std::uint64_t{0xF000}) | 0x4000U;
        const std::uint64_t low = (random.Next() >> 2U) | (std::uint64_t{1} << 63U);
        std::array<char, 40> text{};
        std::snprintf(text.data(), text.size(), "%08X-%04X-%04X-%04X-%012llX", static_cast<unsigned>(high >> 32U),
                      static_cast<unsigned>(high >> 16U & 0xFFFFU), static_cast<unsigned>(high & 0xFFFFU),
                      static_cast<unsigned>(low >> 48U), static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFU));
        return text.data();
    }

    void BindValue(sql::Statement& insert, int parameter, const Table& table, const Column& column,
                   std::int64_t row, SampleRandom& random) const {
        switch (column.type) {
        case ColumnType::Integer:
            BindInteger(insert, parameter, table, column, row, random);
            return;
        case ColumnType::Boolean:
            insert.Bind(parameter, std::int64_t{random.Below(8) == 0});
            return;
        case ColumnType::Decimal:
            insert.Bind(parameter, Amount(table, column, row, random));
            return;
        case ColumnType::Date:
            insert.Bind(parameter, FormatDatabaseDate(DateValue(column, row, random)));
            return;
        case ColumnType::Bytes:
            insert.BindBytes(parameter, Content(random));
            return;
        case ColumnType::Reference:
            insert.Bind(parameter, Parent(column.references, column.indexed, row, random));
            return;
        case ColumnType::Text:
            BindText(insert, parameter, table, column, row, random);
            return;
        }
    }

    /// Lines go round their parents, so that each parent has some.
    std::string Parent(std::string_view table, bool lines, std::int64_t row, SampleRandom& random) const {
        const std::int64_t count = counts_.at(table);
        return UniqueID(table, lines ? row % count : random.Below(count));
    }

    void BindInteger(sql::Statement& insert, int parameter, const Table& table, const Column& column,
                     std::int64_t row, SampleRandom& random) const {
        if (column.name == "AttachmentType") {
            if (row % 5 == 4) {
                insert.BindNull(parameter);
            } else {
                insert.Bind(parameter, row % 5);
            }
        } else if (column.name == "LineNumber") {
            insert.Bind(parameter, row / counts_.at(table.columns.front().references) + 1);
        } else if (column.name == "SortOrder") {
            insert.Bind(parameter, row + 1);
        } else if (column.name.ends_with("Number")) {
            insert.Bind(parameter, 10001 + row);
        } else if (column.name == "State" || column.name == "AccessLevel") {
            insert.Bind(parameter, random.Below(3));
        } else if (column.name.ends_with("Width") || column.name.ends_with("Height")) {
            const std::int64_t least = column.name.starts_with("Maximum") ? 2400 : 300;
            insert.Bind(parameter, least + random.Below(1200));
        } else {
            insert.Bind(parameter, 1 + random.Below(30));
        }
    }

    std::string Amount(const Table& table, const Column& column, std::int64_t row, SampleRandom& random) const {
        std::int64_t cents = 0;
        if (column.name.starts_with("Percent") || column.name.ends_with("Percent") || column.name == "Rate") {
            cents = random.Below(2500);
        } else if (column.name == "SubTotal" || column.name == "Tax" || column.name == "Total") {
            const std::int64_t goods = 5000 + RandomOf(table.name, row).Below(400'000);
            const std::int64_t tax = goods * 7 / 100;
            cents = column.name == "SubTotal" ? goods : column.name == "Tax" ? tax : goods + tax;
        } else {
            cents = random.Below(50'000);
        }
        return std::to_string(cents / 100) + "." + Padded(cents % 100, 2);
    }

    Date DateValue(const Column& column, std::int64_t row, SampleRandom& random) const {
        constexpr std::int64_t day = 86400;
        if (column.name == "ActivityDate") {
            // Every third one is too old for a full export, and none is so near to the limit that it passes it
            // soon.
            const std::int64_t least = row % 3 == 2 ? 40 : 0;
            const std::int64_t span = row % 3 == 2 ? 400 : 20;
            return now_.AddSeconds(-least * day - random.Below(span * day));
        }
        if (column.name == "PromisedOn" || column.name == "ExpectedOn" || column.name == "EndsOn") {
            return now_.AddDays(random.Below(60));
        }
        return now_.AddSeconds(-random.Below(900 * day));
    }

    static std::string Content(SampleRandom& random) {
        std::string bytes(static_cast<std::size_t>(16 + random.Below(600)), '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random.Below(256));
        }
        return bytes;
    }

    void BindText(sql::Statement& insert, int parameter, const Table& table, const Column& column,
                  std::int64_t row, SampleRandom& random) const {
        const std::string_view name = column.name;
        const auto texts = SampleTexts(table.name, name);
        if (const NumberedText* numbered = FindNumberedText(name); numbered != nullptr) {
            insert.Bind(parameter, std::string(numbered->prefix) + Padded(row + 1, numbered->digits) +
                                       std::string(numbered->suffix));
        } else if (name == "OwnerUniqueID") {
            insert.Bind(parameter, Parent("Customers", false, row, random));
        } else if (texts.empty() || (name == "Notes" && random.Below(4) == 0)) {
            insert.BindNull(parameter);
        } else if (name == "Name") {
            const auto count = static_cast<std::int64_t>(texts.size());
            const std::string text(texts[static_cast<std::size_t>(row % count)]);
            insert.Bind(parameter, row < count ? text : text + " " + std::to_string(row / count + 1));
        } else {
            const auto& text =
                texts[static_cast<std::size_t>(random.Below(static_cast<std::int64_t>(texts.size())))];
            const std::string number = name == "Street" ? std::to_string(1 + random.Below(300)) + " " : "";
            insert.Bind(parameter, number + std::string(text));
        }
    }

    std::uint32_t seed_;
    Date now_;
    std::map<std::string_view, std::int64_t> counts_;
};

constexpr std::int64_t SampleCacheKibibytes = 131072;

} // namespace

void FillWithSampleData(const sql::Connection& connection, std::int64_t rows, std::uint32_t seed) {
    if (rows < 1) {
        throw Failure("sample data needs at least one row");
    }
    const auto now = ParseDate(connection.Value("SELECT GETUTCDATE()").value_or(""));
    if (!now) {
        throw Failure("the database does not tell the time");
    }
    const std::unique_ptr<sql::Measure> cache = connection.LimitCache(SampleCacheKibibytes);
    sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
    SampleCompany sample(rows, seed, *now);
    for (const Table& table : AuditedTables()) {
        if (IsFilled(table)) {
            sample.Fill(connection, table);
        }
    }
    transaction.Commit();
}

} // namespace qndr::suite
