#pragma once

#include "services/gated/object_factory.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace qndr::simulation {

/// Sees which sync file an agent works on and how far its data came. It changes nothing.
class ImportWatch {
  public:
    enum class Outcome {
        NotTried,
        NotOpened,  ///< no archive, by what the agent was told
        NoData,     ///< an archive without data.xml
        Unfinished, ///< data.xml is there, and it was not brought as far as the engine
        Refused,    ///< by the engine
        Imported,
    };

    void BeginPass();
    /// The file that was opened last, without its folder; empty when none was in this pass.
    const std::string& File() const { return file_; }
    /// How its last import went.
    Outcome OutcomeOf(const std::string& file) const;
    /// Whether a statement that writes failed in this pass, for whatever reason.
    bool HasFailedUpdate() const { return hasFailedUpdate_; }
    /// Whether one found no row to write to.
    bool HasUpdatedNothing() const { return hasUpdatedNothing_; }

    /// Whether somebody held the file when the agent would have it out of the Sync folder.
    bool WasHeld(const std::string& file) const { return held_.contains(file); }

    void SeeHeld(const std::string& file) { held_.insert(file); }
    void SeeNoArchive();
    void SeeOpened(const std::string& path, bool succeeded);
    void SeeDataAskedFor(bool found) { outcomes_[file_] = found ? Outcome::Unfinished : Outcome::NoData; }
    void SeeImported(bool succeeded) { outcomes_[file_] = succeeded ? Outcome::Imported : Outcome::Refused; }
    /// How many rows were written; negative when the statement failed.
    void SeeUpdate(std::int32_t rows);

  private:
    std::string file_;
    std::map<std::string, Outcome> outcomes_;
    bool hasFailedUpdate_ = false;
    bool hasUpdatedNothing_ = false;
    std::set<std::string> held_;
};

/// Creates what the factory behind it creates, with the watch looking on.
class WatchedObjects : public services::ObjectFactoryWrapper {
  public:
    /// Both must outlive the object and all that it creates.
    WatchedObjects(services::ObjectFactory& target, ImportWatch& watch)
        : ObjectFactoryWrapper(target, nullptr), watch_(watch) {}

    std::unique_ptr<services::SharedCodeLibrary> CreateSharedCodeLibrary() override;
    std::unique_ptr<services::Engine> CreateEngine() override;
    std::unique_ptr<services::ZipArchive> CreateZipArchive() override;

  private:
    ImportWatch& watch_;
};

} // namespace qndr::simulation
