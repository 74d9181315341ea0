#pragma once

#include "services/company_services.h"
#include "services/gated/forwarding.h"

namespace qndr::services {

class EngineWrapper : public Forwarding<Engine> {
  public:
    using Forwarding::Forwarding;

    void Initialize(SharedCodeLibrary& library) override {
        Ask(calls::Engine::Initialize, Raises, [&](Engine& engine) { return engine.Initialize(library); });
    }
    void SetVerbose(bool value) override {
        Ask(calls::Engine::SetVerbose, Raises, [&](Engine& engine) { return engine.SetVerbose(value); });
    }
    void SetIgnoreUnknownTables(bool value) override {
        Ask(calls::Engine::SetIgnoreUnknownTables, Raises,
            [&](Engine& engine) { return engine.SetIgnoreUnknownTables(value); });
    }
    void ClearExports() override {
        Ask(calls::Engine::ClearExports, Raises, [](Engine& engine) { return engine.ClearExports(); });
    }
    void AddToExport(const std::string& table, const std::string& statement, bool deletion) override {
        Ask(calls::Engine::AddToExport, Raises,
            [&](Engine& engine) { return engine.AddToExport(table, statement, deletion); });
    }
    bool DoExport(const std::string& path) override {
        return Ask(calls::Engine::DoExport, false, [&](Engine& engine) { return engine.DoExport(path); });
    }
    bool ImportFile(const std::string& path) override {
        return Ask(calls::Engine::ImportFile, false, [&](Engine& engine) { return engine.ImportFile(path); });
    }
    bool ExportOrder(std::int32_t id, const std::string& path) override {
        return Ask(calls::Engine::ExportOrder, false,
                   [&](Engine& engine) { return engine.ExportOrder(id, path); });
    }
    void PreTerminate() override {
        Ask(calls::Engine::PreTerminate, DoesNothing, [](Engine& engine) { return engine.PreTerminate(); });
    }
};

class PsdFileWrapper : public Forwarding<PsdFile> {
  public:
    using Forwarding::Forwarding;

    bool Load(const std::string& path) override {
        return Ask(calls::PsdFile::Load, false, [&](PsdFile& file) { return file.Load(path); });
    }
    std::string ConnectionString() const override {
        return Ask(calls::PsdFile::ConnectionString, Raises,
                   [](PsdFile& file) { return file.ConnectionString(); });
    }
};

class FileManagerWrapper : public Forwarding<FileManager> {
  public:
    using Forwarding::Forwarding;

    void Initialize(SharedCodeLibrary& library) override {
        Ask(calls::FileManager::Initialize, Raises,
            [&](FileManager& manager) { return manager.Initialize(library); });
    }
    std::string GetRootFolderPath(bool& flag) override {
        return Ask(calls::FileManager::GetRootFolderPath, Raises,
                   [&](FileManager& manager) { return manager.GetRootFolderPath(flag); });
    }
    void PreTerminate() override {
        Ask(calls::FileManager::PreTerminate, DoesNothing,
            [](FileManager& manager) { return manager.PreTerminate(); });
    }
};

class UpgraderWrapper : public Forwarding<Upgrader> {
  public:
    using Forwarding::Forwarding;

    std::string LatestVersion() const override {
        return Ask(calls::Upgrader::LatestVersion, Raises,
                   [](Upgrader& upgrader) { return upgrader.LatestVersion(); });
    }
    void PreTerminate() override {
        Ask(calls::Upgrader::PreTerminate, DoesNothing,
            [](Upgrader& upgrader) { return upgrader.PreTerminate(); });
    }
};

class CompanyManagerWrapper : public Forwarding<CompanyManager> {
  public:
    CompanyManagerWrapper(std::unique_ptr<CompanyManager> target, CallGate* gate)
        : Forwarding(std::move(target), gate),
          psd_(*Pass([](CompanyManager& manager) { return &manager.PSD(); }), gate) {}

    PsdFile& PSD() override { return psd_; }
    bool CanOpenCompany(const std::string& path) override {
        return Ask(calls::CompanyManager::CanOpenCompany, false,
                   [&](CompanyManager& manager) { return manager.CanOpenCompany(path); });
    }
    void PreTerminate() override {
        Ask(calls::CompanyManager::PreTerminate, DoesNothing,
            [](CompanyManager& manager) { return manager.PreTerminate(); });
    }

  private:
    PsdFileWrapper psd_;
};

} // namespace qndr::services
