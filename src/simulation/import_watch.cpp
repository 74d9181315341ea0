#include "simulation/import_watch.h"

#include "services/gated/company_library.h"
#include "services/gated/company_services.h"
#include "services/gated/zip_archive.h"

#include <filesystem>
#include <utility>

namespace qndr::simulation {
namespace {

class WatchedArchive : public services::ZipArchiveWrapper {
  public:
    WatchedArchive(std::unique_ptr<services::ZipArchive> target, ImportWatch& watch)
        : ZipArchiveWrapper(std::move(target), nullptr), watch_(watch) {}

    std::int32_t OpenZip(const std::string& path) override {
        const std::int32_t result = ZipArchiveWrapper::OpenZip(path);
        watch_.SeeOpened(path, result != 0);
        return result;
    }
    std::unique_ptr<services::ZipEntry> GetEntryByName(const std::string& name) override {
        auto entry = ZipArchiveWrapper::GetEntryByName(name);
        if (name == "data.xml") {
            watch_.SeeDataAskedFor(entry != nullptr);
        }
        return entry;
    }

  private:
    ImportWatch& watch_;
};

class WatchedEngine : public services::EngineWrapper {
  public:
    WatchedEngine(std::unique_ptr<services::Engine> target, ImportWatch& watch)
        : EngineWrapper(std::move(target), nullptr), watch_(watch) {}

    bool ImportFile(const std::string& path) override {
        const bool result = EngineWrapper::ImportFile(path);
        watch_.SeeImported(result);
        return result;
    }

  private:
    ImportWatch& watch_;
};

class WatchedDatabase : public services::DatabaseWrapper {
  public:
    WatchedDatabase(services::Database& target, ImportWatch& watch)
        : DatabaseWrapper(target, nullptr), watch_(watch) {}

    std::int32_t ExecuteNonQuery(const services::Statement& statement) override {
        const std::int32_t result = DatabaseWrapper::ExecuteNonQuery(statement);
        watch_.SeeUpdate(result);
        return result;
    }

  private:
    ImportWatch& watch_;
};

class WatchedLibrary : public services::SharedCodeLibraryWrapper {
  public:
    WatchedLibrary(std::unique_ptr<services::SharedCodeLibrary> target, ImportWatch& watch)
        : SharedCodeLibraryWrapper(std::move(target), nullptr),
          database_(SharedCodeLibraryWrapper::Database(), watch) {}

    services::Database& Database() override { return database_; }

  private:
    WatchedDatabase database_;
};

template <typename Watched, typename Object>
std::unique_ptr<Object> Watch(std::unique_ptr<Object> object, ImportWatch& watch) {
    if (!object) {
        return nullptr;
    }
    return std::make_unique<Watched>(std::move(object), watch);
}

} // namespace

void ImportWatch::BeginPass() {
    file_.clear();
    outcomes_.clear();
    hasFailedUpdate_ = false;
    hasUpdatedNothing_ = false;
    held_.clear();
}

void ImportWatch::SeeUpdate(std::int32_t rows) {
    hasFailedUpdate_ = hasFailedUpdate_ || rows < 0;
    hasUpdatedNothing_ = hasUpdatedNothing_ || rows == 0;
}

ImportWatch::Outcome ImportWatch::OutcomeOf(const std::string& file) const {
    const auto found = outcomes_.find(file);
    return found == outcomes_.end() ? Outcome::NotTried : found->second;
}

/// The agent takes that for a file that cannot be opened; unless the archive was to be a new one.
void ImportWatch::SeeNoArchive() {
    if (OutcomeOf(file_) == Outcome::NotTried) {
        outcomes_[file_] = Outcome::NotOpened;
    }
}

void ImportWatch::SeeOpened(const std::string& path, bool succeeded) {
    file_ = std::filesystem::path(path).filename().string();
    if (!succeeded) {
        outcomes_[file_] = Outcome::NotOpened;
    } else if (OutcomeOf(file_) == Outcome::NotOpened) {
        outcomes_[file_] = Outcome::NotTried;
    }
}

std::unique_ptr<services::SharedCodeLibrary> WatchedObjects::CreateSharedCodeLibrary() {
    return Watch<WatchedLibrary>(ObjectFactoryWrapper::CreateSharedCodeLibrary(), watch_);
}

std::unique_ptr<services::Engine> WatchedObjects::CreateEngine() {
    return Watch<WatchedEngine>(ObjectFactoryWrapper::CreateEngine(), watch_);
}

std::unique_ptr<services::ZipArchive> WatchedObjects::CreateZipArchive() {
    auto archive = ObjectFactoryWrapper::CreateZipArchive();
    if (!archive) {
        watch_.SeeNoArchive();
    }
    return Watch<WatchedArchive>(std::move(archive), watch_);
}

} // namespace qndr::simulation
