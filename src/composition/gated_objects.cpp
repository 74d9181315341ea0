#include "composition/gated_objects.h"

#include <utility>

namespace qndr {
namespace {

/// The object behind its wrapper; nothing stays nothing.
template <typename Wrapper, typename Object>
std::unique_ptr<Object> Wrap(std::unique_ptr<Object> object, services::CallGate* gate) {
    if (!object) {
        return nullptr;
    }
    return std::make_unique<Wrapper>(std::move(object), gate);
}

} // namespace

std::unique_ptr<services::SharedCodeLibrary> GatedObjects::CreateSharedCodeLibrary() {
    return Wrap<services::SharedCodeLibraryWrapper>(ObjectFactoryWrapper::CreateSharedCodeLibrary(), gate_);
}

std::unique_ptr<services::Engine> GatedObjects::CreateEngine() {
    return Wrap<services::EngineWrapper>(ObjectFactoryWrapper::CreateEngine(), gate_);
}

std::unique_ptr<services::CompanyManager> GatedObjects::CreateCompanyManager() {
    return Wrap<services::CompanyManagerWrapper>(ObjectFactoryWrapper::CreateCompanyManager(), gate_);
}

std::unique_ptr<services::FileManager> GatedObjects::CreateFileManager() {
    return Wrap<services::FileManagerWrapper>(ObjectFactoryWrapper::CreateFileManager(), gate_);
}

std::unique_ptr<services::Upgrader> GatedObjects::CreateUpgrader() {
    return Wrap<services::UpgraderWrapper>(ObjectFactoryWrapper::CreateUpgrader(), gate_);
}

std::unique_ptr<services::ZipArchive> GatedObjects::CreateZipArchive() {
    return Wrap<services::ZipArchiveWrapper>(ObjectFactoryWrapper::CreateZipArchive(), gate_);
}

std::unique_ptr<services::Standing> GatedObjects::CreateStanding() {
    return Wrap<services::StandingWrapper>(ObjectFactoryWrapper::CreateStanding(), gate_);
}

} // namespace qndr
