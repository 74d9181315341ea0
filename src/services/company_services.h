#pragma once

#include "services/call_gate.h"
#include "services/company_library.h"

#include <memory>
#include <string>

namespace qndr::services {

/// The Import/Export engine of one company: qndriee5.Engine.
class Engine {
  public:
    virtual ~Engine() = default;

    /// Must be called first. The library stays the caller's and must outlive the engine.
    virtual void Initialize(SharedCodeLibrary& library) = 0;
    virtual void SetVerbose(bool value) = 0;

    /// True: an import passes over a table that this database does not know instead of refusing the file.
    virtual void SetIgnoreUnknownTables(bool value) = 0;

    /// Empties the pending list.
    virtual void ClearExports() = 0;

    /// Adds an entry to the pending list; its statement runs in DoExport.
    virtual void AddToExport(const std::string& table, const std::string& statement, bool deletion = false) = 0;

    /// Writes all pending entries, in the order in which they were added and as one state of the database, to one
    /// file. The pending list is empty afterwards, however it ends. False leaves no file.
    virtual bool DoExport(const std::string& path) = 0;

    /// Applies a file in one durable transaction. False only when the file as a whole cannot be taken; nothing is
    /// changed then.
    virtual bool ImportFile(const std::string& path) = 0;

    /// Writes one order with what belongs to it. False when there is no such order or it cannot be written.
    virtual bool ExportOrder(std::int32_t id, const std::string& path) = 0;
    virtual void PreTerminate() = 0;
};

/// Forwards every call of a Engine that `gate` admits. A null gate admits all.
class EngineWrapper : public Engine, private Gated {
  public:
    EngineWrapper(std::unique_ptr<Engine> target, CallGate* gate) : Gated(gate), target_(std::move(target)) {}

    void Initialize(SharedCodeLibrary& library) override {
        Demand("Engine.Initialize");
        target_->Initialize(library);
    }
    void SetVerbose(bool value) override {
        Demand("Engine.SetVerbose");
        target_->SetVerbose(value);
    }
    void SetIgnoreUnknownTables(bool value) override {
        Demand("Engine.SetIgnoreUnknownTables");
        target_->SetIgnoreUnknownTables(value);
    }
    void ClearExports() override {
        Demand("Engine.ClearExports");
        target_->ClearExports();
    }
    void AddToExport(const std::string& table, const std::string& statement, bool deletion) override {
        Demand("Engine.AddToExport");
        target_->AddToExport(table, statement, deletion);
    }
    bool DoExport(const std::string& path) override {
        if (!Admits("Engine.DoExport")) {
            return false;
        }
        return target_->DoExport(path);
    }
    bool ImportFile(const std::string& path) override {
        if (!Admits("Engine.ImportFile")) {
            return false;
        }
        return target_->ImportFile(path);
    }
    bool ExportOrder(std::int32_t id, const std::string& path) override {
        if (!Admits("Engine.ExportOrder")) {
            return false;
        }
        return target_->ExportOrder(id, path);
    }
    void PreTerminate() override {
        if (Admits("Engine.PreTerminate")) {
            target_->PreTerminate();
        }
    }

  protected:
    Engine& Target() const { return *target_; }

  private:
    std::unique_ptr<Engine> target_;
};

/// A company file as the Company Manager reads it.
class PsdFile {
  public:
    virtual ~PsdFile() = default;

    /// False when the file cannot be read or names no database.
    virtual bool Load(const std::string& path) = 0;

    /// Valid after a Load that returned true.
    virtual std::string ConnectionString() const = 0;
};

/// Forwards every call of a PsdFile that `gate` admits. A null gate admits all.
class PsdFileWrapper : public PsdFile, private Gated {
  public:
    PsdFileWrapper(PsdFile& target, CallGate* gate) : Gated(gate), target_(&target) {}

    bool Load(const std::string& path) override {
        if (!Admits("PsdFile.Load")) {
            return false;
        }
        return target_->Load(path);
    }
    std::string ConnectionString() const override {
        Demand("PsdFile.ConnectionString");
        return target_->ConnectionString();
    }

  protected:
    PsdFile& Target() const { return *target_; }

  private:
    PsdFile* target_;
};

/// The file locations of a company: qndrfm5.Library.
class FileManager {
  public:
    virtual ~FileManager() = default;

    /// Must be called first, with a library that knows its .psd file.
    virtual void Initialize(SharedCodeLibrary& library) = 0;

    /// The root of the company's local files. The flag is always False and says nothing.
    virtual std::string GetRootFolderPath(bool& flag) = 0;
    virtual void PreTerminate() = 0;
};

/// Forwards every call of a FileManager that `gate` admits. A null gate admits all.
class FileManagerWrapper : public FileManager, private Gated {
  public:
    FileManagerWrapper(std::unique_ptr<FileManager> target, CallGate* gate)
        : Gated(gate), target_(std::move(target)) {}

    void Initialize(SharedCodeLibrary& library) override {
        Demand("FileManager.Initialize");
        target_->Initialize(library);
    }
    std::string GetRootFolderPath(bool& flag) override {
        Demand("FileManager.GetRootFolderPath");
        return target_->GetRootFolderPath(flag);
    }
    void PreTerminate() override {
        if (Admits("FileManager.PreTerminate")) {
            target_->PreTerminate();
        }
    }

  protected:
    FileManager& Target() const { return *target_; }

  private:
    std::unique_ptr<FileManager> target_;
};

/// The company upgrader: qndrcup5.Upgrader.
class Upgrader {
  public:
    virtual ~Upgrader() = default;

    /// The version of company databases that this installation works with.
    virtual std::string LatestVersion() const = 0;
    virtual void PreTerminate() = 0;
};

/// Forwards every call of a Upgrader that `gate` admits. A null gate admits all.
class UpgraderWrapper : public Upgrader, private Gated {
  public:
    UpgraderWrapper(std::unique_ptr<Upgrader> target, CallGate* gate) : Gated(gate), target_(std::move(target)) {}

    std::string LatestVersion() const override {
        Demand("Upgrader.LatestVersion");
        return target_->LatestVersion();
    }
    void PreTerminate() override {
        if (Admits("Upgrader.PreTerminate")) {
            target_->PreTerminate();
        }
    }

  protected:
    Upgrader& Target() const { return *target_; }

  private:
    std::unique_ptr<Upgrader> target_;
};

/// The Company Manager: qndrcmgr5.Library.
class CompanyManager {
  public:
    virtual ~CompanyManager() = default;
    virtual PsdFile& PSD() = 0;
    /// False when the database that the .psd file names cannot be opened, or is no company. Never makes a
    /// database.
    virtual bool CanOpenCompany(const std::string& path) = 0;
    virtual void PreTerminate() = 0;
};

/// Forwards every call of a CompanyManager that `gate` admits. A null gate admits all.
class CompanyManagerWrapper : public CompanyManager, private Gated {
  public:
    CompanyManagerWrapper(std::unique_ptr<CompanyManager> target, CallGate* gate)
        : Gated(gate), target_(std::move(target)), psd_(target_->PSD(), gate) {}

    PsdFile& PSD() override { return psd_; }
    bool CanOpenCompany(const std::string& path) override {
        return Admits("CompanyManager.CanOpenCompany") && target_->CanOpenCompany(path);
    }
    void PreTerminate() override {
        if (Admits("CompanyManager.PreTerminate")) {
            target_->PreTerminate();
        }
    }

  private:
    std::unique_ptr<CompanyManager> target_;
    PsdFileWrapper psd_;
};

} // namespace qndr::services
