#pragma once

#include "services/company_services.h"
#include "services/standing.h"
#include "services/zip_archive.h"

#include <memory>
#include <string>

namespace qndr::services {

/// Creates the suite's objects, new ones at each call. Nothing comes back when an object cannot be created; the
/// agent then treats that service as absent.
class ObjectFactory {
  public:
    virtual ~ObjectFactory() = default;

    /// "qndrscl5.SharedCodeLibrary"
    virtual std::unique_ptr<SharedCodeLibrary> CreateSharedCodeLibrary() = 0;

    /// "qndriee5.Engine"
    virtual std::unique_ptr<Engine> CreateEngine() = 0;

    /// "qndrcmgr5.Library"
    virtual std::unique_ptr<CompanyManager> CreateCompanyManager() = 0;

    /// "qndrfm5.Library"
    virtual std::unique_ptr<FileManager> CreateFileManager() = 0;

    /// "qndrcup5.Upgrader"
    virtual std::unique_ptr<Upgrader> CreateUpgrader() = 0;

    /// The ZIP component.
    virtual std::unique_ptr<ZipArchive> CreateZipArchive() = 0;

    /// What tells partners how a company stands.
    virtual std::unique_ptr<Standing> CreateStanding() = 0;
};

} // namespace qndr::services
