#pragma once

#include "services/gated/object_factory.h"

namespace qndr {

/// Creates what the factory behind it creates, each object behind its forwarding wrapper, so that the gate stands
/// in front of the calls on the objects too.
class GatedObjects : public services::ObjectFactoryWrapper {
  public:
    /// Both must outlive the objects that are created here; a null gate admits all.
    GatedObjects(services::ObjectFactory& target, services::CallGate* gate) : ObjectFactoryWrapper(target, gate) {}

    std::unique_ptr<services::SharedCodeLibrary> CreateSharedCodeLibrary() override;
    std::unique_ptr<services::Engine> CreateEngine() override;
    std::unique_ptr<services::CompanyManager> CreateCompanyManager() override;
    std::unique_ptr<services::FileManager> CreateFileManager() override;
    std::unique_ptr<services::Upgrader> CreateUpgrader() override;
    std::unique_ptr<services::ZipArchive> CreateZipArchive() override;
    std::unique_ptr<services::Standing> CreateStanding() override;
};

} // namespace qndr
