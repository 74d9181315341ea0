#pragma once

#include "composition/computer_services.h"
#include "simulation/simulated_computer.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qndr::simulation {

/// Names a place in the numbering of one direction of a pairing.
struct FileNumber {
    std::size_t sender = 0; ///< a computer's place
    int epoch = 0;          ///< numberings that the workstation had begun
    std::int64_t sequence = 0;
    auto operator<=>(const FileNumber&) const = default;
};

/// What a sync file says of itself. What it does not say, or nobody can read, is 0 or empty.
struct Descriptor {
    std::string from;
    std::int64_t state = 0;
    std::int64_t sequence = 0;
    bool isReset = false;
    bool operator==(const Descriptor&) const = default;
};

/// A sync file as its sender dropped it.
struct DroppedFile {
    std::size_t sender = 0;
    std::size_t workstation = 0; ///< whose pairing it belongs to
    Descriptor descriptor;
    int epoch = 0;
    std::string data; ///< data.xml; empty when there is none

    FileNumber Number() const { return {sender, epoch, descriptor.sequence}; }
    bool IsFullData() const;
    /// The first exchange's data or a file with a place in a numbering; the others only ask or acknowledge.
    bool HasData() const { return !data.empty(); }
    /// An identity or a value.
    bool Carries(const std::string& text) const { return data.find(text) != std::string::npos; }
};

/// All sync files that were ever dropped, by the names under which they were.
class DroppedFiles {
  public:
    /// The computers must outlive the object.
    explicit DroppedFiles(const std::vector<SimulatedComputer*>& computers);
    ~DroppedFiles();
    DroppedFiles(const DroppedFiles&) = delete;
    DroppedFiles& operator=(const DroppedFiles&) = delete;

    void Add(const std::string& name, DroppedFile file) { files_[name] = std::move(file); }
    /// Null for a file that nobody dropped. Copies that a service has made go by the name of what they copy.
    const DroppedFile* Find(const std::string& name) const;
    const std::map<std::string, DroppedFile>& All() const { return files_; }

    /// Reads a file past all faults.
    Descriptor ReadDescriptor(const std::string& path) const;
    /// data.xml; nothing when the file cannot be read.
    static std::optional<std::string> ReadData(const std::string& path);

  private:
    std::map<std::string, DroppedFile> files_;
    std::unique_ptr<ComputerServices> outside_; ///< to read files with, past all faults
};

} // namespace qndr::simulation
