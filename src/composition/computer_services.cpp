#include "composition/computer_services.h"

#include "composition/gated_objects.h"
#include "composition/lock_pauses.h"
#include "composition/message_pause.h"
#include "services/gated/array_tools.h"
#include "services/gated/command_line_tools.h"
#include "services/gated/directory_calls.h"
#include "services/gated/file_tools.h"
#include "services/gated/ini_tools.h"
#include "services/gated/path_tools.h"
#include "services/gated/platform.h"
#include "services/gated/registry_tools.h"
#include "services/gated/system_tools.h"
#include "services/gated/text_file_tools.h"
#include "shared/paths2.h"
#include "suite/computer/operating_system.h"
#include "suite/computer/posix/directory_calls.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/system_facts.h"
#include "suite/files/arrays.h"
#include "suite/files/command_line.h"
#include "suite/files/disk_files.h"
#include "suite/files/ini_files.h"
#include "suite/files/text_files.h"
#include "suite/objects/suite_objects.h"
#include "suite/settings/registry_store.h"

namespace qndr {
namespace {

/// The suite on one computer. It works with its own services directly; the gate stands in front of the agent
/// alone.
struct Suite {
    Suite(const suite::Computer& theComputer, const TimeServices& time, const std::string& programName,
          const std::vector<std::string>& switchNames, suite::FileReads* otherReads)
        : computer(theComputer), registryTools(computer.registryFile, time.clock),
          lockPauses(time.messages, time.timers, registryTools, programName),
          patience(time.messages, time.timers, programName),
          archives(otherReads != nullptr ? *otherReads : reads, &patience, &time.clock),
          fileTools(suite::TemporaryPlaces(computer), &trouble), directoryCalls(suite::TemporaryPlaces(computer)),
          iniTools(&archives.Unwritten()),
          objects(computer, registryTools, iniTools, time.clock, trouble, lockPauses, archives),
          commandLineTools(switchNames), systemTools(computer), specialFolderTools(computer),
          program(computer, programName) {}

    const suite::Computer computer;
    suite::RegistryStore registryTools;
    suite::ComputerTrouble trouble;
    LockPauses lockPauses;
    MessagePatience patience;
    suite::FileReads reads;
    suite::ArchiveShelf archives;
    suite::DiskFileTools fileTools;
    suite::PosixDirectoryCalls directoryCalls;
    suite::DiskIniTools iniTools;
    suite::DiskTextFileTools textFileTools;
    suite::DiskTextAppender textAppender;
    suite::PlainStringArrayTools stringArrayTools;
    suite::PlainArrayTools arrayTools;
    suite::SuiteObjects objects;
    suite::SwitchReader commandLineTools;
    suite::ComputerSystemTools systemTools;
    suite::ComputerSpecialFolders specialFolderTools;
    suite::ProgramFileVersions fileVersions;
    suite::RunningProgram program;
    suite::SystemProcesses processes;
};

} // namespace

struct ComputerServices::Parts {
    Parts(const suite::Computer& computer, const TimeServices& time, const std::string& programName,
          const std::vector<std::string>& switchNames, services::CallGate* gate, suite::FileReads* reads)
        : inner(computer, time, programName, switchNames, reads), objects(inner.objects, gate),
          commandLineTools(inner.commandLineTools, gate), registryTools(inner.registryTools, gate),
          fileTools(inner.fileTools, gate), directoryCalls(inner.directoryCalls, gate),
          iniTools(inner.iniTools, gate), textFileTools(inner.textFileTools, gate),
          stringArrayTools(inner.stringArrayTools, gate), arrayTools(inner.arrayTools, gate),
          systemTools(inner.systemTools, gate), specialFolderTools(inner.specialFolderTools, gate),
          clock(time.clock, gate), messages(time.messages, gate), timers(time.timers, gate),
          fileVersions(inner.fileVersions, gate), textAppender(inner.textAppender, gate),
          program(inner.program, gate), processes(inner.processes, gate),
          paths2(directoryCalls, fileTools, messages), pathTools(paths2, gate) {}

    Suite inner;
    GatedObjects objects;
    services::CommandLineToolsWrapper commandLineTools;
    services::RegistryToolsWrapper registryTools;
    services::FileToolsWrapper fileTools;
    services::DirectoryCallsWrapper directoryCalls;
    services::IniToolsWrapper iniTools;
    services::TextFileToolsWrapper textFileTools;
    services::StringArrayToolsWrapper stringArrayTools;
    services::ArrayToolsWrapper arrayTools;
    services::SystemToolsWrapper systemTools;
    services::SpecialFolderToolsWrapper specialFolderTools;
    services::ClockWrapper clock;
    services::MessagePumpWrapper messages;
    services::WaitableTimersWrapper timers;
    services::FileVersionsWrapper fileVersions;
    services::TextAppenderWrapper textAppender;
    services::ProgramFactsWrapper program;
    services::ProcessesWrapper processes;
    Paths2 paths2;
    services::PathToolsWrapper pathTools;
    services::AgentServices all{
        objects,          commandLineTools, registryTools, fileTools,          pathTools, iniTools, textFileTools,
        stringArrayTools, arrayTools,       systemTools,   specialFolderTools, clock,     messages, timers,
        fileVersions,     textAppender,     program,       processes};
};

ComputerServices::ComputerServices(const suite::Computer& computer, const TimeServices& time,
                                   const std::string& programName, const std::vector<std::string>& switchNames,
                                   services::CallGate* gate, suite::FileReads* reads)
    : parts_(std::make_unique<Parts>(computer, time, programName, switchNames, gate, reads)) {
    suite::KeepNewFilesPrivate();
    suite::ReturnLargeBlocks();
}

ComputerServices::~ComputerServices() = default;

const services::AgentServices& ComputerServices::Services() const {
    return parts_->all;
}

void ComputerServices::TellWaitsTo(std::function<void(const std::string&)> teller) {
    parts_->inner.lockPauses.TellTo(std::move(teller));
}

void ComputerServices::TellCompaniesLeftAloneTo(std::function<void(const std::string&)> teller) {
    parts_->inner.objects.Marks().OnLeftAlone(std::move(teller));
}

} // namespace qndr
