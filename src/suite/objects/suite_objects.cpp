#include "suite/objects/suite_objects.h"

#include "suite/files/zip_archive.h"
#include "suite/objects/company_library.h"
#include "suite/objects/company_manager.h"
#include "suite/objects/company_standing.h"
#include "suite/objects/engine.h"
#include "suite/objects/file_manager.h"
#include "suite/objects/upgrader.h"

namespace qndr::suite {

std::unique_ptr<services::SharedCodeLibrary> SuiteObjects::CreateSharedCodeLibrary() {
    return std::make_unique<CompanyLibrary>(registry_, clock_, trouble_, &wait_, &marks_);
}

std::unique_ptr<services::Engine> SuiteObjects::CreateEngine() {
    return std::make_unique<ImportExportEngine>(trouble_);
}

std::unique_ptr<services::CompanyManager> SuiteObjects::CreateCompanyManager() {
    return std::make_unique<CompanyManager>(iniTools_, clock_, marks_);
}

std::unique_ptr<services::FileManager> SuiteObjects::CreateFileManager() {
    return std::make_unique<FileManager>(computer_);
}

std::unique_ptr<services::Upgrader> SuiteObjects::CreateUpgrader() {
    return std::make_unique<Upgrader>();
}

std::unique_ptr<services::ZipArchive> SuiteObjects::CreateZipArchive() {
    return std::make_unique<LibZipArchive>(archives_, &trouble_);
}

std::unique_ptr<services::Standing> SuiteObjects::CreateStanding() {
    return std::make_unique<CompanyStanding>(computer_, clock_, trouble_, archives_);
}

} // namespace qndr::suite
