#pragma once

#include "services/gated/forwarding.h"
#include "services/object_factory.h"

namespace qndr::services {

class ObjectFactoryWrapper : public Forwarding<ObjectFactory> {
  public:
    using Forwarding::Forwarding;

    std::unique_ptr<SharedCodeLibrary> CreateSharedCodeLibrary() override {
        return Ask(calls::ObjectFactory::CreateSharedCodeLibrary, nullptr,
                   [](ObjectFactory& factory) { return factory.CreateSharedCodeLibrary(); });
    }
    std::unique_ptr<Engine> CreateEngine() override {
        return Ask(calls::ObjectFactory::CreateEngine, nullptr,
                   [](ObjectFactory& factory) { return factory.CreateEngine(); });
    }
    std::unique_ptr<CompanyManager> CreateCompanyManager() override {
        return Ask(calls::ObjectFactory::CreateCompanyManager, nullptr,
                   [](ObjectFactory& factory) { return factory.CreateCompanyManager(); });
    }
    std::unique_ptr<FileManager> CreateFileManager() override {
        return Ask(calls::ObjectFactory::CreateFileManager, nullptr,
                   [](ObjectFactory& factory) { return factory.CreateFileManager(); });
    }
    std::unique_ptr<Upgrader> CreateUpgrader() override {
        return Ask(calls::ObjectFactory::CreateUpgrader, nullptr,
                   [](ObjectFactory& factory) { return factory.CreateUpgrader(); });
    }
    std::unique_ptr<ZipArchive> CreateZipArchive() override {
        return Ask(calls::ObjectFactory::CreateZipArchive, nullptr,
                   [](ObjectFactory& factory) { return factory.CreateZipArchive(); });
    }
    std::unique_ptr<Standing> CreateStanding() override {
        return Ask(calls::ObjectFactory::CreateStanding, nullptr,
                   [](ObjectFactory& factory) { return factory.CreateStanding(); });
    }
};

} // namespace qndr::services
