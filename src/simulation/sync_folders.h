#pragma once

#include "simulation/chronicle.h"
#include "simulation/faults.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace qndr::simulation {

/// The one shared folder as each computer sees it: a folder of its own that a service keeps like the others'. With
/// no fault in the plan it is like one share: what one computer drops or deletes is there or gone for all others
/// at once. It injects all that such services do wrong; a file that it damages stays damaged, one that it delays
/// arrives at last, so that a pairing can always go on or is out of step for a reason that was noted.
class SyncFolders {
  public:
    struct Place {
        std::string computer; ///< its name in the chronicle
        std::string folder;
    };
    /// Plan and chronicle must outlive the object. Makes the folders.
    SyncFolders(std::vector<Place> places, const FaultPlan& plan, SeededRandom random, Chronicle& chronicle);

    /// Called with the name of a file of which nothing whole will ever arrive.
    void OnLostFile(std::function<void(const std::string&)> handler) { lostFile_ = std::move(handler); }

    /// Gives the computer all that is due for it by now, in minutes.
    void Deliver(std::size_t computer, std::int64_t now);
    /// Takes up what the computer has dropped and deleted.
    void Collect(std::size_t computer, std::int64_t now);
    /// Lets all that is under way arrive.
    void DeliverAll();
    /// Deletes the files of that name, and its copies, everywhere.
    void Purge(const std::string& name);

    /// The names of the files that the computer sees.
    std::set<std::string> Names(std::size_t computer) const;
    const std::string& Folder(std::size_t computer) const { return places_[computer].folder; }

    std::int64_t FilesDropped() const { return filesDropped_; }
    std::int64_t BytesDropped() const { return bytesDropped_; }

    /// The name under which the file was dropped; the services give copies names of their own.
    static std::string DroppedName(const std::string& name);

  private:
    using Content = std::shared_ptr<const std::string>;
    struct Delivery {
        std::int64_t due;
        std::size_t computer;
        std::string name;
        Content content; ///< null for a deletion
    };

    bool IsAnother(std::size_t computer, const std::string& name) const;
    void Upload(std::size_t computer, const std::string& name, std::int64_t now);
    void Spread(std::size_t from, const std::string& name, const Content& content, std::int64_t now);
    void SpreadDeletion(std::size_t from, const std::string& name, std::int64_t now);
    void Apply(const Delivery& delivery);
    bool Strikes(Fault fault) { return random_.Chance(plan_.Rate(fault)); }

    std::vector<Place> places_;
    const FaultPlan& plan_;
    SeededRandom random_;
    Chronicle& chronicle_;
    std::function<void(const std::string&)> lostFile_;
    std::vector<std::map<std::string, Content>> known_; ///< what each computer had when it was last looked at
    std::vector<Delivery> underWay_;                    ///< in the order in which they were sent off
    std::int64_t filesDropped_ = 0;
    std::int64_t bytesDropped_ = 0;
};

} // namespace qndr::simulation
