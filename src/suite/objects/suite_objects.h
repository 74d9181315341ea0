#pragma once

#include "services/ini_tools.h"
#include "services/object_factory.h"
#include "services/platform.h"
#include "services/registry_tools.h"
#include "suite/computer/computer.h"
#include "suite/computer/computer_trouble.h"
#include "suite/files/archive_shelf.h"
#include "suite/objects/company_marks.h"
#include "suite/sql/lock_wait.h"

namespace qndr::suite {

/// Creates the suite's objects for one process on a computer. What it is given must outlive it and the objects
/// that it creates.
class SuiteObjects : public services::ObjectFactory {
  public:
    SuiteObjects(const Computer& computer, services::RegistryTools& registry, services::IniTools& iniTools,
                 const services::Clock& clock, ComputerTrouble& trouble, sql::LockWait& wait,
                 ArchiveShelf& archives)
        : computer_(computer), registry_(registry), iniTools_(iniTools), clock_(clock), trouble_(trouble),
          wait_(wait), archives_(archives), marks_(computer.name) {}

    /// Which companies the agent works on that has these objects.
    CompanyMarks& Marks() { return marks_; }

    std::unique_ptr<services::SharedCodeLibrary> CreateSharedCodeLibrary() override;
    std::unique_ptr<services::Engine> CreateEngine() override;
    std::unique_ptr<services::CompanyManager> CreateCompanyManager() override;
    std::unique_ptr<services::FileManager> CreateFileManager() override;
    std::unique_ptr<services::Upgrader> CreateUpgrader() override;
    std::unique_ptr<services::ZipArchive> CreateZipArchive() override;
    std::unique_ptr<services::Standing> CreateStanding() override;

  private:
    const Computer& computer_;
    services::RegistryTools& registry_;
    services::IniTools& iniTools_;
    const services::Clock& clock_;
    ComputerTrouble& trouble_;
    sql::LockWait& wait_;
    ArchiveShelf& archives_;
    CompanyMarks marks_;
};

} // namespace qndr::suite
