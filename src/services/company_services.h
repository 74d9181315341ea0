#pragma once

#include "services/company_library.h"

#include <memory>
#include <string>

namespace qndr::services {

/// The Import/Export engine of one company: qndriee5.Engine.
class Engine {
  public:
    virtual ~Engine() = default;

    /// Must be called first. The library stays the caller's and must outlive the engine.
    virtual void Initialize(SharedCodeLibrary& library) = 0;
    virtual void SetVerbose(bool value) = 0;

    /// True: an import passes over a table that this database does not know instead of refusing the file.
    virtual void SetIgnoreUnknownTables(bool value) = 0;

    /// Empties the pending list.
    virtual void ClearExports() = 0;

    /// Adds an entry to the pending list; its statement, one of services/exchange_statements.h, runs in DoExport.
    /// Raises for any other, and the next DoExport then fails: a change that is left out would count as sent.
    virtual void AddToExport(const std::string& table, const std::string& statement, bool deletion = false) = 0;

    /// Writes all pending entries, in the order in which they were added and as one state of the database, to one
    /// file. The pending list is empty afterwards, however it ends. False leaves no file.
    virtual bool DoExport(const std::string& path) = 0;

    /// Applies a file in one durable transaction. False only when the file as a whole cannot be taken; nothing is
    /// changed then.
    virtual bool ImportFile(const std::string& path) = 0;

    /// Writes one order with what belongs to it. False when there is no such order or it cannot be written.
    virtual bool ExportOrder(std::int32_t id, const std::string& path) = 0;
    virtual void PreTerminate() = 0;
};

/// A company file as the Company Manager reads it.
class PsdFile {
  public:
    virtual ~PsdFile() = default;

    /// False when the file cannot be read or names no database.
    virtual bool Load(const std::string& path) = 0;

    /// Valid after a Load that returned true.
    virtual std::string ConnectionString() const = 0;
};

/// The file locations of a company: qndrfm5.Library.
class FileManager {
  public:
    virtual ~FileManager() = default;

    /// Must be called first, with a library that knows its .psd file.
    virtual void Initialize(SharedCodeLibrary& library) = 0;

    /// The root of the company's local files. The flag is always False and says nothing.
    virtual std::string GetRootFolderPath(bool& flag) = 0;
    virtual void PreTerminate() = 0;
};

/// The company upgrader: qndrcup5.Upgrader.
class Upgrader {
  public:
    virtual ~Upgrader() = default;

    /// The version of company databases that this installation works with.
    virtual std::string LatestVersion() const = 0;
    virtual void PreTerminate() = 0;
};

/// The Company Manager: qndrcmgr5.Library.
class CompanyManager {
  public:
    virtual ~CompanyManager() = default;
    virtual PsdFile& PSD() = 0;
    /// False when the database that the .psd file names cannot be opened, or is no company. Never makes a
    /// database.
    virtual bool CanOpenCompany(const std::string& path) = 0;
    virtual void PreTerminate() = 0;
};

} // namespace qndr::services
