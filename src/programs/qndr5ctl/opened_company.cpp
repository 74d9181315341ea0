#include "programs/qndr5ctl/opened_company.h"

#include "programs/qndr5ctl/sync_words.h"
#include "services/company_numbers.h"
#include "services/failure.h"
#include "suite/admin/company_creation.h"
#include "suite/objects/company_library.h"
#include "suite/objects/company_manager.h"
#include "suite/schema/company_versions.h"

namespace qndr::control {

using services::Failure;

namespace {

/// The connection of the library, whose failure tells more than the Company Manager's "no".
sql::Connection& ConnectionOf(services::SharedCodeLibrary& library) {
    return dynamic_cast<suite::CompanyLibrary&>(library.Implementation()).Connection();
}

} // namespace

OpenedCompany::OpenedCompany(const ControlContext& context, const std::string& psdFile, Older older)
    : psdFile_(psdFile), library_(context.services.objects.CreateSharedCodeLibrary()) {
    const auto manager = context.services.objects.CreateCompanyManager();
    if (!library_ || !manager) {
        throw Failure("the company services are not available");
    }
    if (!context.services.fileTools.FileExists(psdFile)) {
        throw Failure("there is no file '" + psdFile + "'");
    }
    if (!manager->PSD().Load(psdFile)) {
        throw Failure("'" + psdFile + "' is no company file: it cannot be read or names no database");
    }
    const std::string connectionString = manager->PSD().ConnectionString();
    manager->PreTerminate();
    try {
        library_->SetConnectionString(connectionString);
        library_->SetPSDFile(psdFile);
        connection_ = &ConnectionOf(*library_);
        if (suite::IsCompany(*connection_)) {
            if (older == Older::Leave && suite::ReadSchemaVersion(*connection_) < suite::CompanySchemaVersion) {
                throw OlderCompany("the company of '" + psdFile + "' is of an older version");
            }
            suite::BringUpToDate(*connection_, context.services.clock);
            return;
        }
    } catch (const OlderCompany&) {
        throw;
    } catch (const Failure& failure) {
        throw Failure("the database of '" + psdFile + "' cannot be opened: " + failure.what());
    }
    throw Failure("the database of '" + psdFile + "' is no company");
}

OpenedCompany::~OpenedCompany() {
    library_->PreTerminate();
}

std::string OpenedCompany::Text(const std::string& column) const {
    return connection_->Value("SELECT " + column + " FROM Company").value_or("");
}

std::int64_t OpenedCompany::Number(const std::string& column) const {
    return connection_->Number("SELECT " + column + " FROM Company");
}

bool OpenedCompany::IsMain() const {
    return Number("CompanyType") == suite::MainCompanyType;
}

bool OpenedCompany::IsRoaming() const {
    return Number("CompanyType") == suite::RoamingCompanyType;
}

void OpenedCompany::DemandMain() const {
    if (!IsMain()) {
        throw Failure("'" + psdFile_ + "' is no main company");
    }
}

void OpenedCompany::DemandRoaming() const {
    if (!IsRoaming()) {
        throw Failure("'" + psdFile_ + "' is no Roaming Workstation company");
    }
}

void OpenedCompany::DemandThatChangesTravel() const {
    const std::int64_t state = Number("SyncState");
    if (IsRoaming() && state != SyncStateReady) {
        throw Failure("this workstation's state is " + NumberInWords(state, WordsForCompanyState(state)) +
                      ": a change can be made here when it is ready, or on main");
    }
}

Json StoredDate(const std::string& stored) {
    const auto date = ParseDate(stored);
    return date ? Json(text::UtcMoment{FormatGeneralDate(*date)}) : stored.empty() ? Json() : Json(stored);
}

} // namespace qndr::control
