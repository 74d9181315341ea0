#include "simulation/fault_gate.h"

#include <utility>

namespace qndr::simulation {
namespace {

const std::set<std::string, std::less<>> WritesToTheDatabase{"Database.ExecuteNonQuery"};

const std::set<std::string, std::less<>> WritesToTheDisk{
    "Database.ExecuteNonQuery",
    "Engine.DoExport",
    "Engine.ExportOrder",
    "FileTools.CopyFile",
    "FileTools.CreateTemporaryFile",
    "IniTools.SetValue",
    "PathTools.CreateNestedFolder",
    "PathTools.CreateTemporaryFolder",
    "RegistryTools.SetLong",
    "RegistryTools.SetString",
    "TextAppender.Append",
    "TextFileTools.WriteTextFile",
    "ZipArchive.WriteZipAndClose",
    "ZipEntry.Extract",
};

/// Comes once for each level of a path from the root down. Were it counted, a seed would lead elsewhere in a
/// folder that lies deeper.
constexpr std::string_view PerLevel = "DirectoryCalls.Find";

/// What these answer for a computer's own trouble is settled behind the seam. There it is brought about.
bool IsSettledBehindTheSeam(std::string_view call) {
    return call == "Engine.ImportFile" || call == "Engine.Initialize" || call == "ZipArchive.OpenZip" ||
           call == "ZipArchive.GetEntryByName" || call == "ObjectFactory.CreateZipArchive";
}

/// Refused, it would end the whole agent before it has begun anything.
bool IsPartOfTheStart(std::string_view call) {
    return call.starts_with("CommandLineTools.") || call.starts_with("ProgramFacts.");
}

} // namespace

void FaultGate::BeginPass() {
    refused_.clear();
    previous_.clear();
    dying_ = false;
}

bool FaultGate::Admits(std::string_view call) {
    if (dying_) {
        return false;
    }
    if (call == PerLevel) {
        return true;
    }
    if (!previous_.empty()) {
        try {
            afterCall_(std::exchange(previous_, std::string()));
        } catch (const Violation&) {
            dying_ = true; // what unwinds now is not to be judged again
            throw;
        }
    }
    previous_ = call;
    if (Strikes(Fault::EditInPass)) {
        edit_();
    }
    if (call == "MessagePump.ProcessMessages" && Strikes(Fault::StopAgent)) {
        stop_();
    }
    if (!IsPartOfTheStart(call) && Strikes(Fault::Die)) {
        chronicle_.NoteFault(computer_, "die", "the agent dies at " + previous_);
        dying_ = true;
        throw AgentDied();
    }
    const bool disturbed =
        (diskFull_ && WritesToTheDisk.contains(call)) || (locked_ && WritesToTheDatabase.contains(call));
    if (disturbed || (!IsPartOfTheStart(call) && !IsSettledBehindTheSeam(call) && Strikes(Fault::RefuseCall))) {
        if (disturbed) {
            chronicle_.Note(computer_, previous_ + " is refused, for the disk is full or the database locked");
        } else {
            chronicle_.NoteFault(computer_, "refuse-call", previous_ + " is refused");
        }
        refused_.insert(previous_);
        return false;
    }
    return true;
}

} // namespace qndr::simulation
