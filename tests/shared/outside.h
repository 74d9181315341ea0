#pragma once

#include "services/agent_services.h"
#include "shared/paths2.h"
#include "shared/simulated_directories.h"
#include "suite/computer/system_facts.h"
#include "suite/files/arrays.h"
#include "suite/files/command_line.h"
#include "suite/files/ini_files.h"
#include "suite/files/text_files.h"
#include "support/fakes.h"

namespace qndr::testing {

struct FixedFacts : services::ProgramFacts,
                    services::SpecialFolderTools,
                    services::FileVersions,
                    services::SystemTools {
    std::string ExecutableName() const override { return "qndr5rwsync"; }
    std::string Folder() const override { return "C:\\Program"; }
    std::string Version() const override { return "5.0.0"; }
    bool AnotherCopyIsRunning() override { return false; }
    std::string GetFolderPath(std::int32_t folderNumber) override { return folderNumber == 35 ? "C:\\Data" : ""; }
    std::optional<services::FixedFileVersion> GetFileVersion(const std::string&) override { return version; }
    std::string GetIdentifierText() override { return "ID"; }
    std::string GetComputerName() override { return "MAINPC"; }

    std::optional<services::FixedFileVersion> version;
};

struct NoTimers : services::WaitableTimers {
    std::unique_ptr<services::WaitableTimer> Create(const std::string&) override {
        throw services::Failure("no timers");
    }
};

/// Makes nothing but the upgrader that it is given.
struct UpgraderOnly : services::ObjectFactory {
    std::unique_ptr<services::SharedCodeLibrary> CreateSharedCodeLibrary() override { return nullptr; }
    std::unique_ptr<services::Engine> CreateEngine() override { return nullptr; }
    std::unique_ptr<services::CompanyManager> CreateCompanyManager() override { return nullptr; }
    std::unique_ptr<services::FileManager> CreateFileManager() override { return nullptr; }
    std::unique_ptr<services::Upgrader> CreateUpgrader() override { return std::move(upgrader); }
    std::unique_ptr<services::ZipArchive> CreateZipArchive() override { return nullptr; }

    std::unique_ptr<services::Upgrader> upgrader;
};

/// The outside of an agent on a simulated computer with a drive C:, 14 November 2026, 18:10:00.
struct Outside {
    Outside() {
        directories.AddFolder("C:\\Data");
        directories.AddFolder("C:\\Temp");
    }

    SimulatedDirectories directories;
    SimulatedFiles files{directories};
    CountedMessages messages;
    Paths2 paths{directories, files, messages};
    MemoryRegistry registry;
    FixedClock clock;
    FixedFacts facts;
    NoTimers timers;
    suite::SystemProcesses processes;
    UpgraderOnly objects;
    suite::SwitchReader switches{{}};
    suite::DiskIniTools iniFiles;
    suite::DiskTextFileTools textFiles;
    suite::PlainStringArrayTools stringArrays;
    suite::PlainArrayTools arrays;
    services::AgentServices services{objects,   switches,     registry, files, paths, iniFiles,
                                     textFiles, stringArrays, arrays,   facts, facts, clock,
                                     messages,  timers,       facts,    files, facts, processes};
};

} // namespace qndr::testing
