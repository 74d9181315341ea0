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
const std::set<Call> Decisive{
    calls::Database::ExecuteNonQuery,        calls::Engine::DoExport,  calls::FileTools::CopyFile,
    calls::PathTools::CreateTemporaryFolder, calls::ZipEntry::Extract,
};
/// What is small still finds room on a full disk.
constexpr double FullOften = 0.7;

const std::set<Call> WritesToTheDisk{
    calls::Engine::DoExport,
    calls::Engine::ExportOrder,
    calls::FileTools::CopyFile,
    calls::FileTools::CreateTemporaryFile,
    calls::IniTools::SetValue,
    calls::PathTools::CreateNestedFolder,
    calls::PathTools::CreateTemporaryFolder,
    calls::RegistryTools::SetLong,
    calls::RegistryTools::SetString,
    calls::TextAppender::Append,
    calls::TextFileTools::WriteTextFile,
    calls::ZipArchive::WriteZipAndClose,
    calls::ZipEntry::Extract,
};

/// Comes once for each level of a path from the root down. Were it counted, a seed would lead elsewhere in a
/// folder that lies deeper.
constexpr Call PerLevel = calls::DirectoryCalls::Find;

/// What these answer for a computer's own trouble is settled behind the seam. There it is brought about.
bool IsSettledBehindTheSeam(Call call) {
    return call == calls::Engine::ImportFile || call == calls::Engine::Initialize ||
           call == calls::ZipArchive::OpenZip || call == calls::ZipArchive::GetEntryByName ||
           call == calls::ObjectFactory::CreateZipArchive;
}

/// Refused, it would end the whole agent before it has begun anything.
bool IsPartOfTheStart(Call call) {
    return call.Name().starts_with("CommandLineTools.") || call.Name().starts_with("ProgramFacts.");
}

} // namespace

void FaultGate::BeginPass() {
    refused_.clear();
    previous_.reset();
    dying_ = false;
}

bool FaultGate::Admits(Call call) {
    if (dying_) {
        return false;
    }
    if (call == PerLevel) {
        return true;
    }
    if (call == calls::ObjectFactory::CreateStanding && !allowsStanding_) {
        return false;
    }
    const bool stops = call == calls::MessagePump::ProcessMessages && Strikes(Fault::StopAgent);
    if (depth_ > 1) {
        if (stops) {
            stop_();
        }
        return true;
    }
    if (previous_) {
        try {
            afterCall_(*std::exchange(previous_, std::nullopt));
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
        chronicle_.NoteFault(computer_, "die", "the agent dies at " + std::string(call.Name()));
        dying_ = true;
        throw AgentDied();
    }
    below_.BeforeCall(call);
    if (IsRefused(call)) {
        refused_.insert(call);
        return false;
    }
    return true;
}

bool FaultGate::IsRefused(Call call) {
    if (below_.IsDiskFull() && WritesToTheDisk.contains(call) && random_.Chance(FullOften)) {
        chronicle_.Note(computer_, std::string(call.Name()) + " is refused, for the disk is full");
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
    chronicle_.NoteFault(computer_, "refuse-call", std::string(call.Name()) + " is refused");
    return true;
}

} // namespace qndr::simulation
