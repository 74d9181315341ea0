#pragma once

#include "composition/computer_services.h"
#include "diagnosis/diagnosis.h"
#include "diagnosis/fates.h"
#include "simulation/simulated_computer.h"
#include "simulation/sync_folders.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace qndr::simulation {

/// What was said of a file.
struct Prophecy {
    diagnosis::FolderFile file;
    diagnosis::Judgement judgement;
};

/// Asks the diagnosis as a person at a computer would. Past all faults, and without a trace.
class Doctor {
  public:
    /// The computers and folders must outlive the object.
    Doctor(std::vector<SimulatedComputer*> computers, const SyncFolders& folders);
    ~Doctor();
    Doctor(const Doctor&) = delete;
    Doctor& operator=(const Doctor&) = delete;

    /// What the computer's next pass will make of each file in its Sync folder, by name.
    std::map<std::string, Prophecy> Foresee(std::size_t computer);
    /// What is wrong, notes left out: as far as the computer alone can tell, and with all companies at hand.
    std::vector<diagnosis::Finding> Troubles(std::size_t computer) const;

  private:
    /// A file that was read once is not read again while it stays as it is, which is most of what asking takes.
    struct ReadFile {
        std::uintmax_t size = 0;
        std::filesystem::file_time_type date;
        diagnosis::FolderFile file;
    };

    const diagnosis::FolderFile& Read(std::size_t computer, const std::string& name);

    std::vector<SimulatedComputer*> computers_;
    const SyncFolders& folders_;
    std::vector<std::unique_ptr<ComputerServices>> outside_;
    std::map<std::string, ReadFile> read_; ///< by path
};

} // namespace qndr::simulation
