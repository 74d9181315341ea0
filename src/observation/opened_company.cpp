#include "observation/opened_company.h"

#include "suite/admin/company_creation.h"
#include "suite/objects/company_library.h"
#include "suite/objects/company_manager.h"
#include "suite/schema/company_versions.h"

namespace qndr::observation {

using services::Failure;

namespace {

/// The connection of the library, whose failure tells more than the Company Manager's "no".
sql::Connection& ConnectionOf(services::SharedCodeLibrary& library) {
    return dynamic_cast<suite::CompanyLibrary&>(library.Implementation()).Connection();
}

} // namespace

OpenedCompany::OpenedCompany(const services::AgentServices& services, const std::string& psdFile, Older older)
    : psdFile_(psdFile), library_(services.objects.CreateSharedCodeLibrary()) {
    const auto manager = services.objects.CreateCompanyManager();
    if (!library_ || !manager) {
        throw Failure("the company services are not available");
    }
    if (!services.fileTools.FileExists(psdFile)) {
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
            suite::BringUpToDate(*connection_, services.clock);
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

bool OpenedCompany::IsMain() const {
    return connection_->Number("SELECT CompanyType FROM Company") == suite::MainCompanyType;
}

bool OpenedCompany::IsRoaming() const {
    return connection_->Number("SELECT CompanyType FROM Company") == suite::RoamingCompanyType;
}

} // namespace qndr::observation
