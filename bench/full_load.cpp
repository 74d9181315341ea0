// The agent's part of bench/full-load: prepares a dealer, or runs one pass as a process of its own and reports its
// phases and peak memory as JSON. The pauses of the protocol cost nothing here; everything else is as the agent
// does it.

#include "agent/run_sync.h"
#include "composition/computer_services.h"
#include "suite/company/company_compare.h"
#include "suite/company/company_creation.h"
#include "suite/company/provisioning.h"
#include "suite/company/sample_data.h"
#include "suite/computer/virtual_time.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <utility>

namespace {

using namespace qndr;

constexpr const char* kLocations = R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Default))";

using Phases = std::map<std::string, double>;

/// Adds the time of its life to a phase.
class Stopwatch {
  public:
    Stopwatch(Phases& phases, const std::string& name) : seconds_(phases[name]) {}
    ~Stopwatch() { seconds_ += std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

  private:
    double& seconds_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

class TimedEngine : public services::EngineWrapper {
  public:
    TimedEngine(std::unique_ptr<services::Engine> engine, Phases& phases)
        : EngineWrapper(std::move(engine), nullptr), phases_(phases) {}
    bool DoExport(const std::string& path) override {
        const Stopwatch watch(phases_, "export");
        return EngineWrapper::DoExport(path);
    }
    bool ImportFile(const std::string& path) override {
        const Stopwatch watch(phases_, "import");
        return EngineWrapper::ImportFile(path);
    }

  private:
    Phases& phases_;
};

class TimedEntry : public services::ZipEntryWrapper {
  public:
    TimedEntry(std::unique_ptr<services::ZipEntry> entry, Phases& phases)
        : ZipEntryWrapper(std::move(entry), nullptr), phases_(phases) {}
    std::int32_t Extract(const std::string& folder) override {
        const Stopwatch watch(phases_, "unpack");
        return ZipEntryWrapper::Extract(folder);
    }

  private:
    Phases& phases_;
};

class TimedArchive : public services::ZipArchiveWrapper {
  public:
    TimedArchive(std::unique_ptr<services::ZipArchive> archive, Phases& phases)
        : ZipArchiveWrapper(std::move(archive), nullptr), phases_(phases) {}
    std::int32_t WriteZipAndClose() override {
        const Stopwatch watch(phases_, "pack");
        return ZipArchiveWrapper::WriteZipAndClose();
    }
    std::unique_ptr<services::ZipEntry> GetEntryByName(const std::string& name) override {
        auto entry = ZipArchiveWrapper::GetEntryByName(name);
        return entry ? std::make_unique<TimedEntry>(std::move(entry), phases_) : nullptr;
    }

  private:
    Phases& phases_;
};

class TimedObjects : public services::ObjectFactoryWrapper {
  public:
    TimedObjects(services::ObjectFactory& target, Phases& phases)
        : ObjectFactoryWrapper(target, nullptr), phases_(phases) {}
    std::unique_ptr<services::Engine> CreateEngine() override {
        return std::make_unique<TimedEngine>(ObjectFactoryWrapper::CreateEngine(), phases_);
    }
    std::unique_ptr<services::ZipArchive> CreateZipArchive() override {
        return std::make_unique<TimedArchive>(ObjectFactoryWrapper::CreateZipArchive(), phases_);
    }

  private:
    Phases& phases_;
};

class TimedFiles : public services::FileToolsWrapper {
  public:
    TimedFiles(services::FileTools& target, Phases& phases) : FileToolsWrapper(target, nullptr), phases_(phases) {}
    bool CopyFile(const std::string& source, const std::string& target, bool overwrite) override {
        const Stopwatch watch(phases_, "drop");
        return FileToolsWrapper::CopyFile(source, target, overwrite);
    }

  private:
    Phases& phases_;
};

suite::Computer ComputerOf(const std::string& folder, const std::string& name) {
    return suite::Computer::InFolder(folder + "/" + name, name);
}
std::string CompaniesOf(const std::string& folder, const std::string& name) {
    return folder + "/" + name + "/Companies";
}

/// Runs one pass on a computer of the dealer and gives what its phases took.
Phases RunPass(const std::string& folder, const std::string& name) {
    suite::VirtualTime time(*ParseDate("2026-11-22 14:00:00"));
    const ComputerServices outside(ComputerOf(folder, name), {time, time, time}, "qndr5rwsync", {});
    const services::AgentServices& all = outside.Services();
    // The folder may be a copy of the one that was prepared.
    all.registryTools.SetString(services::CurrentUserHive, kLocations, "UFL:Sync", folder + "/sync");
    Phases phases;
    TimedObjects objects(all.objects, phases);
    TimedFiles files(all.fileTools, phases);
    AgentContext context({objects, all.commandLineTools, all.registryTools, files, all.pathTools, all.iniTools,
                          all.textFileTools, all.stringArrayTools, all.arrayTools, all.systemTools,
                          all.specialFolderTools, all.clock, all.messages, all.timers, all.fileVersions,
                          all.textAppender, all.program});
    context.CompaniesFolder = CompaniesOf(folder, name);
    const auto start = std::chrono::steady_clock::now();
    RunSync(context, nullptr);
    double rest = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    for (const auto& [phase, seconds] : phases) {
        rest -= seconds;
    }
    phases["rest"] = rest;
    return phases;
}

std::unique_ptr<suite::SqliteConnection> Open(const std::string& folder, const std::string& name,
                                              const services::Clock& clock) {
    return std::make_unique<suite::SqliteConnection>(CompaniesOf(folder, name) + "/dealer.db", clock,
                                                     suite::SqliteConnection::Missing::Refuse);
}

/// A filled main company and a laptop that has sent its request.
void Prepare(const std::string& folder, std::int64_t exchangedRows) {
    std::filesystem::create_directories(folder + "/sync");
    suite::VirtualTime time(*ParseDate("2026-11-22 14:00:00"));
    for (const auto& [name, type] :
         {std::pair{"main", suite::MainCompanyType}, {"laptop", suite::RoamingCompanyType}}) {
        std::filesystem::create_directories(CompaniesOf(folder, name));
        const ComputerServices outside(ComputerOf(folder, name), {time, time, time}, "bench", {});
        const services::AgentServices& all = outside.Services();
        suite::CreateCompany({.psdFile = CompaniesOf(folder, name) + "/dealer.psd",
                              .name = name,
                              .type = type,
                              .connectionString = ""},
                             all.iniTools, all.systemTools, time);
        all.registryTools.SetLong(services::CurrentUserHive, kLocations, "RoamingWorkstation",
                                  type == suite::RoamingCompanyType ? 1 : 0);
    }
    const auto main = Open(folder, "main", time);
    suite::SetCompanyOption(*main, "Roaming Workstations", "EnableSync", "1");
    suite::SetCompanyOption(*main, "Roaming Workstations", "SyncComputerName", "main");
    // Orders and old activities stay at home: about a fifth of the sample rows.
    suite::FillWithSampleData(*main, exchangedRows * 5 / 4, 1);
    suite::AddWorkstation(*main, *Open(folder, "laptop", time));
    RunPass(folder, "laptop");

    std::int64_t exchanged = 0;
    for (const auto& table :
         suite::CompareCompanies(*main, *Open(folder, "laptop", time), suite::Scope::Exchanged)) {
        exchanged += table.onlyLeft;
    }
    std::cout << "{\"exchanged\": " << exchanged
              << ", \"databaseBytes\": " << std::filesystem::file_size(CompaniesOf(folder, "main") + "/dealer.db")
              << "}\n";
}

/// Peak resident memory of this process. Not from getrusage, which counts the peak of the program that started it.
double PeakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stod(line.substr(6)) / 1024.0;
        }
    }
    throw std::runtime_error("no VmHWM in /proc/self/status");
}

void Pass(const std::string& folder, const std::string& name) {
    const Phases phases = RunPass(folder, name);
    std::uintmax_t archive = 0;
    for (const auto& file : std::filesystem::directory_iterator(folder + "/sync")) {
        archive = std::max(archive, file.file_size());
    }
    std::cout << "{\"peakMB\": " << PeakMegabytes() << ", \"archiveBytes\": " << archive << ", \"phases\": {";
    const char* separator = "";
    for (const auto& [phase, seconds] : phases) {
        std::cout << separator << '"' << phase << "\": " << seconds;
        separator = ", ";
    }
    std::cout << "}}\n";
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 3 && arguments[0] == "prepare") {
            Prepare(arguments[1], std::stoll(arguments[2]));
        } else if (arguments.size() == 3 && arguments[0] == "pass") {
            Pass(arguments[1], arguments[2]);
        } else {
            std::cerr << "usage: bench_full_load prepare FOLDER ROWS | pass FOLDER main|laptop\n";
            return 2;
        }
    } catch (const std::exception& failure) {
        std::cerr << "bench_full_load: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}
