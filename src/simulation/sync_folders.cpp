#include "simulation/sync_folders.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace qndr::simulation {
namespace {

namespace fs = std::filesystem;

constexpr const char* CopyMark = " (conflicted copy)";
constexpr std::int64_t HourMinutes = 60;
constexpr std::int64_t LongestDelay = 4 * 24 * HourMinutes;

std::string Read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Files that a program is still writing have such names, and the services leave them alone.
bool IsUnfinished(const std::string& name) {
    return name.starts_with("~$");
}

/// A file of which there is always the newest version alone.
bool IsRewritten(const std::string& name) {
    return name.ends_with(".rsf");
}

std::set<std::string> NamesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (const std::string name = entry.path().filename().string(); !IsUnfinished(name)) {
            names.insert(name);
        }
    }
    return names;
}

std::string CopyName(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    return name.substr(0, dot) + CopyMark + name.substr(dot);
}

} // namespace

SyncFolders::SyncFolders(std::vector<Place> places, const FaultPlan& plan, SeededRandom random,
                         Chronicle& chronicle)
    : places_(std::move(places)), plan_(plan), random_(random), chronicle_(chronicle), known_(places_.size()) {
    for (const Place& place : places_) {
        fs::create_directories(place.folder);
    }
}

std::string SyncFolders::DroppedName(const std::string& name) {
    std::string dropped = name;
    if (const std::size_t mark = dropped.find(CopyMark); mark != std::string::npos) {
        dropped.erase(mark, std::string(CopyMark).size());
    }
    return dropped;
}

void SyncFolders::Deliver(std::size_t computer, std::int64_t now) {
    std::vector<Delivery> later;
    std::vector<Delivery> due;
    for (Delivery& delivery : underWay_) {
        (delivery.computer == computer && delivery.due <= now ? due : later).push_back(std::move(delivery));
    }
    underWay_ = std::move(later);
    std::stable_sort(due.begin(), due.end(),
                     [](const Delivery& left, const Delivery& right) { return left.due < right.due; });
    std::for_each(due.begin(), due.end(), [this](const Delivery& delivery) { Apply(delivery); });
}

void SyncFolders::Apply(const Delivery& delivery) {
    const fs::path path = fs::path(places_[delivery.computer].folder) / delivery.name;
    if (delivery.content == nullptr) {
        fs::remove(path);
        known_[delivery.computer].erase(delivery.name);
    } else {
        std::ofstream(path, std::ios::binary) << *delivery.content;
        known_[delivery.computer][delivery.name] = delivery.content;
    }
}

void SyncFolders::Collect(std::size_t computer, std::int64_t now) {
    const std::set<std::string> present = NamesIn(places_[computer].folder);
    std::set<std::string> gone;
    for (const auto& [name, content] : known_[computer]) {
        if (!present.contains(name)) {
            gone.insert(name);
        }
    }
    for (const std::string& name : gone) {
        SpreadDeletion(computer, name, now);
    }
    for (const std::string& name : present) {
        if (!known_[computer].contains(name) || (IsRewritten(name) && IsAnother(computer, name))) {
            Upload(computer, name, now);
        }
    }
    for (std::size_t other = 0; other < places_.size(); ++other) {
        // What is meant to be there at once is, for all.
        Deliver(other, now);
    }
}

bool SyncFolders::IsAnother(std::size_t computer, const std::string& name) const {
    return *known_[computer].at(name) != Read(fs::path(places_[computer].folder) / name);
}

void SyncFolders::Upload(std::size_t computer, const std::string& name, std::int64_t now) {
    const fs::path path = fs::path(places_[computer].folder) / name;
    const auto content = std::make_shared<const std::string>(Read(path));
    const std::string& who = places_[computer].computer;
    known_[computer][name] = content;
    const auto lost = [&] {
        if (!IsRewritten(name)) { // the next version takes its place
            lostFile_(name);
        }
    };
    ++filesDropped_;
    bytesDropped_ += static_cast<std::int64_t>(content->size());
    if (Strikes(Fault::LoseFile)) {
        chronicle_.NoteFault(who, "lose-file", name + " is lost in the Sync folder");
        fs::remove(path);
        known_[computer].erase(name);
        lost();
        return;
    }
    if (Strikes(Fault::TruncateFile)) {
        chronicle_.NoteFault(who, "truncate-file", name + " arrives by half");
        Spread(computer, name, std::make_shared<const std::string>(content->substr(0, content->size() / 2)), now);
        lost();
        return;
    }
    if (Strikes(Fault::EmptyFile)) {
        chronicle_.NoteFault(who, "empty-file", name + " shows as empty at first");
        const std::size_t sent = underWay_.size();
        Spread(computer, name, std::make_shared<const std::string>(), now);
        const std::vector<Delivery> empty(underWay_.begin() + static_cast<std::ptrdiff_t>(sent), underWay_.end());
        for (const Delivery& delivery : empty) {
            underWay_.push_back(
                {delivery.due + 1 + random_.Below(12 * HourMinutes), delivery.computer, name, content});
        }
        return;
    }
    Spread(computer, name, content, now);
    if (Strikes(Fault::DoubleFile)) {
        chronicle_.NoteFault(who, "double-file", name + " gets a second copy");
        Spread(places_.size(), CopyName(name), content, now + random_.Below(12 * HourMinutes));
    }
}

void SyncFolders::Spread(std::size_t from, const std::string& name, const Content& content, std::int64_t now) {
    for (std::size_t other = 0; other < places_.size(); ++other) {
        if (other != from) {
            std::int64_t due = now;
            if (Strikes(Fault::DelayFile)) {
                due += 1 + random_.Below(random_.Chance(0.2) ? LongestDelay : 6 * HourMinutes);
                chronicle_.NoteFault(places_[other].computer, "delay-file",
                                     name + " comes " + std::to_string(due - now) + " minutes late");
            }
            underWay_.push_back({due, other, name, content});
        }
    }
}

void SyncFolders::SpreadDeletion(std::size_t from, const std::string& name, std::int64_t now) {
    const Content content = known_[from][name];
    known_[from].erase(name);
    for (std::size_t other = 0; other < places_.size(); ++other) {
        if (other != from) {
            // Behind the arrival of the file that it is about.
            std::int64_t due = now;
            for (const Delivery& delivery : underWay_) {
                if (delivery.computer == other && delivery.name == name) {
                    due = std::max(due, delivery.due);
                }
            }
            underWay_.push_back({due, other, name, nullptr});
        }
    }
    if (Strikes(Fault::BringBackFile)) {
        chronicle_.NoteFault(places_[from].computer, "bring-back-file", name + " will come back");
        Spread(places_.size(), name, content, now + 1 + random_.Below(2 * 24 * HourMinutes));
    }
}

void SyncFolders::DeliverAll() {
    for (std::size_t computer = 0; computer < places_.size(); ++computer) {
        Deliver(computer, INT64_MAX);
    }
}

void SyncFolders::Purge(const std::string& name) {
    for (std::size_t computer = 0; computer < places_.size(); ++computer) {
        for (const std::string& each : {name, CopyName(name)}) {
            fs::remove(fs::path(places_[computer].folder) / each);
            known_[computer].erase(each);
        }
    }
}

std::set<std::string> SyncFolders::Names(std::size_t computer) const {
    return NamesIn(places_[computer].folder);
}

} // namespace qndr::simulation
