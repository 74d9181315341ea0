#pragma once

#include "services/record_document.h"
#include "services/statement.h"
#include "services/variant.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace qndr::services {

/// The SQL database of the open company. One statement a call: text behind the first statement is refused. So is a
/// statement whose filled-in values could be more than values: inside a literal whatever could end one in this
/// database, outside of literals whatever is no number. A refusal is an error of the database.
class Database {
  public:
    virtual ~Database() = default;

    /// The first column of the first row. The default comes back for no row, a NULL and an empty text. `second` is
    /// always empty. Raises when the database refuses the statement; LastSQLErrorDescription then tells why.
    virtual Variant ExecuteScaler(const Statement& statement, const std::string& second = "",
                                  const Variant& fallback = {}) = 0;

    /// The number of rows that the statement itself matched, or -1 on an error of the database.
    virtual std::int32_t ExecuteNonQuery(const Statement& statement) = 0;

    /// All rows of the result; nothing on an error of the database.
    virtual std::unique_ptr<RecordDocument> ExecuteRead(const Statement& statement) = 0;

    /// The database's words for the last failure; empty when the last call succeeded.
    virtual std::string LastSQLErrorDescription() const = 0;
};

/// A database object for statements outside the company's own one.
class SqlConnection {
  public:
    virtual ~SqlConnection() = default;

    /// As on Database.
    virtual std::int32_t ExecuteNonQuery(const Statement& statement) = 0;
    virtual void PreTerminate() = 0;
};

/// The profiles of settings on this computer.
class Profiles {
  public:
    virtual ~Profiles() = default;

    /// All later lookups of options and locations use this profile, and fall back on the default one.
    virtual void SetProfile(const std::string& name) = 0;
};

/// What this computer is.
class Security {
  public:
    virtual ~Security() = default;

    /// True on a computer that is set up as a Roaming Workstation. Needs no open company.
    virtual bool IsRoamingWorkstation() const = 0;
};

/// Options of the company and locations on this computer.
class Options {
  public:
    virtual ~Options() = default;

    /// The default comes back for a missing option, a NULL and an empty text.
    virtual Variant GetCompanyOption(const std::string& section, const std::string& key,
                                     const Variant& fallback = {}) = 0;

    /// A folder path; empty when the location is not set.
    virtual std::string UserFileLocation(const std::string& name) = 0;
};

/// The services of one company: qndrscl5.SharedCodeLibrary. The sub-objects live as long as the library and are
/// usable before a company is open, but for Database and QNDRSQL, which need the connection string.
class SharedCodeLibrary {
  public:
    virtual ~SharedCodeLibrary() = default;

    /// Makes Database usable. The connection itself is opened by the first statement.
    virtual void SetConnectionString(const std::string& text) = 0;
    /// Path of the company's .psd file.
    virtual void SetPSDFile(const std::string& path) = 0;
    /// 1 main, 2 Roaming Workstation; kept as it is given.
    virtual void SetOperatingMode(std::int16_t mode) = 0;
    virtual std::int16_t OperatingMode() const = 0;

    virtual services::Profiles& Profiles() = 0;
    virtual services::Security& Security() = 0;
    virtual services::Options& Options() = 0;
    virtual services::Database& Database() = 0;
    /// Nothing when not available.
    virtual SqlConnection* QNDRSQL() = 0;

    /// Enters a line in the company's own event list. Raises when it cannot.
    virtual void RecordEvent(const std::string& text, std::optional<std::int32_t> number = std::nullopt) = 0;
    /// Ends the object's work on the company; nothing may be asked of it afterwards.
    virtual void PreTerminate() = 0;

    /// The library behind any wrapper, for the services of the same make that take a library (engine, file
    /// manager).
    virtual SharedCodeLibrary& Implementation() { return *this; }
};

} // namespace qndr::services
