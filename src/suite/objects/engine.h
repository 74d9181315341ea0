#pragma once

#include "services/company_services.h"
#include "suite/computer/computer_trouble.h"
#include "suite/engine/export_list.h"
#include "suite/engine/export_writer.h"

#include <cstdint>
#include <string>

namespace qndr::suite {

class CompanyLibrary;

/// The Import/Export engine of this suite: it moves rows between company databases as exchange files
/// (docs/formats.md) and settles which version of a row stays. Before Initialize and after PreTerminate it exports
/// and imports nothing and answers False, as it does while this computer's trouble stands.
class ImportExportEngine : public services::Engine {
  public:
    /// The trouble must outlive the engine.
    explicit ImportExportEngine(ComputerTrouble& trouble) : trouble_(trouble) {}

    /// Raises services::Failure for a library of another make.
    void Initialize(services::SharedCodeLibrary& library) override;
    /// True: each export and import is entered in the company's event list.
    void SetVerbose(bool value) override { verbose_ = value; }
    void SetIgnoreUnknownTables(bool value) override { ignoreUnknownTables_ = value; }

    void ClearExports() override;
    void AddToExport(const std::string& table, const std::string& statement, bool deletion) override;
    bool DoExport(const std::string& path) override;
    /// False for a file that has something wrong with it: that is an event, and the file counts as done. Whatever
    /// else keeps it out is noted as this computer's trouble, so that the file stays.
    bool ImportFile(const std::string& path) override;
    /// The order and its items, without origins: a kept copy is taken back as a version like any other. The
    /// pending list is not touched.
    bool ExportOrder(std::int32_t id, const std::string& path) override;
    void PreTerminate() override;

  private:
    bool Export(const ExportList& list, ExportOrigin origin, const std::string& path);
    void Tell(const std::string& text);

    ComputerTrouble& trouble_;
    CompanyLibrary* library_ = nullptr;
    bool verbose_ = false;
    bool ignoreUnknownTables_ = false;
    ExportList pending_;
    bool isIncomplete_ = false; ///< an entry was not understood
};

} // namespace qndr::suite
