#include "programs/qndr5ctl/file_import.h"

#include "observation/working_folder.h"
#include "services/failure.h"
#include "shared/records.h"
#include "suite/computer/system_facts.h"
#include "syncfiles/descriptor.h"

namespace qndr::control {

using services::Failure;

namespace {

/// Both forms of the agent go by this name.
constexpr const char* AgentProgramName = "qndr5rwsync";

/// The descriptor, and below the folder the data.
FoundSyncFile Unpack(const ControlContext& context, const std::string& archive,
                     const observation::WorkingFolder& folder) {
    const auto zip = context.services.objects.CreateZipArchive();
    if (!zip || zip->OpenZip(archive) == 0) {
        throw Failure("the archive '" + archive + "' cannot be read" + (zip ? ": " + zip->LastErrorText() : ""));
    }
    for (const char* name : {"id.dat", "data.xml"}) {
        const auto entry = zip->GetEntryByName(name);
        if (!entry || entry->Extract(folder.Path()) != 1) {
            throw Failure("the archive '" + archive + "' has no " + name + " that can be read");
        }
    }
    zip->CloseZip();
    AgentContext agent(context.services);
    FoundSyncFile file;
    ReadIdFile(agent, folder.FileOf("id.dat"), file);
    return file;
}

void DemandChangesOfAPartner(const OpenedCompany& company, const FoundSyncFile& file) {
    if (file.SyncState != 0 || file.IsSyncReset == FieldTrue || file.Sequence < 0) {
        throw Failure("this is no file of changes; full data comes by asking for it");
    }
    auto partner =
        company.Database().Prepare(company.IsMain() ? "SELECT 1 FROM RoamingWorkstations WHERE UniqueID = ?1"
                                                    : "SELECT 1 FROM Company WHERE MainUniqueID = ?1");
    partner.Bind(1, file.From);
    if (!partner.Step()) {
        throw Failure("the sender '" + file.From + "' is none that this company exchanges with");
    }
}

} // namespace

suite::ImportResult ImportByHand(const ControlContext& context, const OpenedCompany& company,
                                 const std::string& archive) {
    company.DemandThatChangesTravel();
    // Held until the import is done: an agent must not meet a company that changes below its feet.
    suite::RunningProgram agent(context.computer, AgentProgramName);
    if (agent.AnotherCopyIsRunning()) {
        throw Failure("the agent of this computer is running: 'qndr5ctl stop' ends it, then try again");
    }
    const observation::WorkingFolder folder(context.services);
    DemandChangesOfAPartner(company, Unpack(context, archive, folder));
    return suite::Import(company.Database(), folder.FileOf("data.xml"),
                         suite::ImportReader::UnknownTables::PassOver, suite::Arrival::ByHand);
}

} // namespace qndr::control
