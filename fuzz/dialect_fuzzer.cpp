// The dialect step: nothing but a pair of quotes round a bare date part is put into a statement, and it stays one.
#include "services/failure.h"
#include "suite/company_fixture.h"
#include "suite/sql/sql_text.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support.h"

#include <cstring>

namespace qndr::suite {
namespace {

using fuzz::Require;

/// Whether the database takes the end of `sql` for a place between two tokens. The word in between ends a trigger,
/// whose body does not end with its first semicolon.
bool EndsOutside(std::string_view sql) {
    return sqlite3_complete((std::string(sql) + "; end;").c_str()) != 0;
}

bool IsNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           c == ':' || c == '@' || c == '#' || static_cast<unsigned char>(c) >= 0x80;
}

/// Walks both texts side by side: the result may have quotes round a word where the original has none.
void CheckInsertions(const std::string& sql, const std::string& result) {
    std::size_t from = 0;
    bool inWord = false;
    for (std::size_t to = 0; to < result.size(); ++to) {
        if (from < sql.size() && sql[from] == result[to]) {
            Require(!inWord || IsNameCharacter(sql[from]), "quotes stand round a bare word");
            ++from;
            continue;
        }
        Require(result[to] == '\'', "nothing but quotes is put in");
        if (!inWord) {
            Require(EndsOutside(std::string_view(sql).substr(0, from)), "no quote is put into a literal");
        }
        inWord = !inWord;
    }
    Require(from == sql.size() && !inWord, "nothing is left out");
}

/// How the database sees the text by itself, without the step.
struct Prepared {
    bool taken = false;
    bool alone = false;    ///< nothing but blanks and comments stands behind the first statement
    bool followed = false; ///< something else does, and it is more than semicolons
};

Prepared PrepareAsItStands(const sql::SqliteConnection& connection, const std::string& sql) {
    sqlite3_stmt* raw = nullptr;
    const char* tail = nullptr;
    const bool readable = sqlite3_prepare_v2(connection.Handle(), sql.c_str(), -1, &raw, &tail) == SQLITE_OK;
    sqlite3_finalize(raw);
    Prepared prepared{.taken = readable && raw != nullptr};
    // More semicolons are refused, and so is a vertical tab, which the database takes for a blank behind another
    // one.
    prepared.alone = prepared.taken && std::strpbrk(tail, ";\v") == nullptr;
    while (prepared.taken && !prepared.followed && *tail != '\0') {
        sqlite3_stmt* next = nullptr;
        prepared.followed = sqlite3_prepare_v2(connection.Handle(), tail, -1, &next, &tail) != SQLITE_OK;
        prepared.followed |= next != nullptr;
        sqlite3_finalize(next);
    }
    prepared.alone &= !prepared.followed;
    return prepared;
}

/// Nothing is run here, but some pragmas work as soon as they are prepared, and would outlast the input.
int Authorize(void*, int action, const char*, const char*, const char*, const char*) {
    return action == SQLITE_PRAGMA ? SQLITE_DENY : SQLITE_OK;
}

bool Takes(const sql::Connection& connection, const std::string& sql) {
    try {
        connection.Prepare(sql);
        return true;
    } catch (const services::Failure&) {
        return false;
    }
}

} // namespace
} // namespace qndr::suite

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr::suite;
    using qndr::fuzz::Require;
    static const StandingClock clock;
    static const qndr::sql::SqliteConnection connection(qndr::fuzz::Scratch() / "dialect.db", clock,
                                                        qndr::sql::Missing::Create);
    static const bool made = [] {
        connection.ExecuteScript("CREATE TABLE IF NOT EXISTS T (ID INTEGER PRIMARY KEY, Name TEXT, AddedOn TEXT)");
        sqlite3_set_authorizer(connection.Handle(), &Authorize, nullptr);
        return true;
    }();
    static_cast<void>(made);
    const std::string sql = qndr::fuzz::AsText(data, size);
    const std::string result = qndr::sql::ToSqliteDialect(sql);
    Require(qndr::sql::ToSqliteDialect(result) == result, "the step has nothing left to do in its own result");
    if (sql.find('\0') != std::string::npos) {
        Require(!Takes(connection, sql), "a statement with a null character is refused");
        return 0;
    }
    CheckInsertions(sql, result);
    const Prepared original = PrepareAsItStands(connection, sql);
    const bool taken = Takes(connection, sql);
    Require(!taken || !original.followed, "a second statement is refused");
    Require(!original.alone || taken, "what is one statement by itself stays one");
    return 0;
}
