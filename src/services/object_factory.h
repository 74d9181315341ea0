#pragma once

#include "services/call_gate.h"
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

/// Forwards every call of a ObjectFactory that `gate` admits. A null gate admits all.
class ObjectFactoryWrapper : public ObjectFactory, private Gated {
  public:
    ObjectFactoryWrapper(ObjectFactory& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::unique_ptr<SharedCodeLibrary> CreateSharedCodeLibrary() override {
        if (!Admits("ObjectFactory.CreateSharedCodeLibrary")) {
            return nullptr;
        }
        return target_->CreateSharedCodeLibrary();
    }
    std::unique_ptr<Engine> CreateEngine() override {
        if (!Admits("ObjectFactory.CreateEngine")) {
            return nullptr;
        }
        return target_->CreateEngine();
    }
    std::unique_ptr<CompanyManager> CreateCompanyManager() override {
        if (!Admits("ObjectFactory.CreateCompanyManager")) {
            return nullptr;
        }
        return target_->CreateCompanyManager();
    }
    std::unique_ptr<FileManager> CreateFileManager() override {
        if (!Admits("ObjectFactory.CreateFileManager")) {
            return nullptr;
        }
        return target_->CreateFileManager();
    }
    std::unique_ptr<Upgrader> CreateUpgrader() override {
        if (!Admits("ObjectFactory.CreateUpgrader")) {
            return nullptr;
        }
        return target_->CreateUpgrader();
    }
    std::unique_ptr<ZipArchive> CreateZipArchive() override {
        if (!Admits("ObjectFactory.CreateZipArchive")) {
            return nullptr;
        }
        return target_->CreateZipArchive();
    }
    std::unique_ptr<Standing> CreateStanding() override {
        if (!Admits("ObjectFactory.CreateStanding")) {
            return nullptr;
        }
        return target_->CreateStanding();
    }

  protected:
    ObjectFactory& Target() const { return *target_; }

  private:
    ObjectFactory* target_;
};

} // namespace qndr::services
