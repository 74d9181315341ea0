#include "simulation/fault_gate.h"

#include <utility>

namespace qndr::simulation {
namespace {

/// Few kinds of calls fail in a run, and those often: most calls come once or twice in a pass, and what comes of a
/// failure shows in the passes behind it.
constexpr double Weak = 0.06;
constexpr double WeakOften = 0.1;
/// Of the calls on whose answer it hangs whether a file counts as made, as sent or as taken.
constexpr double DecisiveWeak = 0.4;
const std::set<std::string, std::less<>> Decisive{
    "Database.ExecuteNonQuery",        "Engine.DoExport",  "FileTools.CopyFile",
    "PathTools.CreateTemporaryFolder", "ZipEntry.Extract",
};
/// What is small still finds room on a full disk.
constexpr double FullOften = 0.7;

const std::set<std::string, std::less<>> WritesToTheDisk{
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
    if (call == "ObjectFactory.CreateStanding" && !allowsStanding_) {
        return false;
    }
    const bool stops = call == "MessagePump.ProcessMessages" && Strikes(Fault::StopAgent);
    if (depth_ > 1) {
        if (stops) {
            stop_();
        }
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
    if (stops) {
        stop_();
    }
    if (!IsPartOfTheStart(call) && Strikes(Fault::Die)) {
        chronicle_.NoteFault(computer_, "die", "the agent dies at " + previous_);
        dying_ = true;
        throw AgentDied();
    }
    below_.BeforeCall(call);
    if (IsRefused(previous_)) {
        refused_.insert(previous_);
        return false;
    }
    return true;
}

bool FaultGate::IsRefused(const std::string& call) {
    if (below_.IsDiskFull() && WritesToTheDisk.contains(call) && random_.Chance(FullOften)) {
        chronicle_.Note(computer_, call + " is refused, for the disk is full");
        return true;
    }
    const double rate = plan_.Rate(Fault::RefuseCall);
    if (rate == 0 || IsPartOfTheStart(call) || IsSettledBehindTheSeam(call)) {
        return false;
    }
    const auto [weak, isNew] = weak_.try_emplace(call, false);
    if (isNew) {
        weak->second = random_.Chance(Decisive.contains(call) ? DecisiveWeak : Weak);
    }
    if (!random_.Chance(weak->second ? WeakOften : rate)) {
        return false;
    }
    chronicle_.NoteFault(computer_, "refuse-call", call + " is refused");
    return true;
}

} // namespace qndr::simulation
