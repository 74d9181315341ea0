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

/// An archive whose entries stand behind the gate too.
class GatedZipArchive : public services::ZipArchiveWrapper {
  public:
    GatedZipArchive(std::unique_ptr<services::ZipArchive> target, services::CallGate* gate)
        : ZipArchiveWrapper(std::move(target), gate), gate_(gate) {}

    std::unique_ptr<services::ZipEntry> GetEntryByName(const std::string& name) override {
        return Wrap<services::ZipEntryWrapper>(ZipArchiveWrapper::GetEntryByName(name), gate_);
    }

  private:
    services::CallGate* gate_;
};

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
    return Wrap<GatedZipArchive>(ObjectFactoryWrapper::CreateZipArchive(), gate_);
}

} // namespace qndr
