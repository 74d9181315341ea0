#include "composition/gated_objects.h"

#include "services/gated/company_library.h"
#include "services/gated/company_services.h"
#include "services/gated/standing.h"
#include "services/gated/zip_archive.h"

namespace qndr {
std::unique_ptr<services::SharedCodeLibrary> GatedObjects::CreateSharedCodeLibrary() {
    return services::Behind<services::SharedCodeLibraryWrapper>(ObjectFactoryWrapper::CreateSharedCodeLibrary(),
                                                                Gate());
}

std::unique_ptr<services::Engine> GatedObjects::CreateEngine() {
    return services::Behind<services::EngineWrapper>(ObjectFactoryWrapper::CreateEngine(), Gate());
}

std::unique_ptr<services::CompanyManager> GatedObjects::CreateCompanyManager() {
    return services::Behind<services::CompanyManagerWrapper>(ObjectFactoryWrapper::CreateCompanyManager(), Gate());
}

std::unique_ptr<services::FileManager> GatedObjects::CreateFileManager() {
    return services::Behind<services::FileManagerWrapper>(ObjectFactoryWrapper::CreateFileManager(), Gate());
}

std::unique_ptr<services::Upgrader> GatedObjects::CreateUpgrader() {
    return services::Behind<services::UpgraderWrapper>(ObjectFactoryWrapper::CreateUpgrader(), Gate());
}

std::unique_ptr<services::ZipArchive> GatedObjects::CreateZipArchive() {
    return services::Behind<services::ZipArchiveWrapper>(ObjectFactoryWrapper::CreateZipArchive(), Gate());
}

std::unique_ptr<services::Standing> GatedObjects::CreateStanding() {
    return services::Behind<services::StandingWrapper>(ObjectFactoryWrapper::CreateStanding(), Gate());
}

} // namespace qndr
