#include "observation/company_facts.h"

#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/engine/sent_ranges.h"
#include "text/whole_number.h"

namespace qndr::observation {

using diagnosis::CompanyFacts;

CompanyFacts ReadCompanyFacts(const sql::Connection& company) {
    CompanyFacts facts;
    {
        auto row =
            company.Prepare("SELECT Name, UniqueID, CompanyType, SyncState, MainUniqueID, NextSequenceFromMain,"
                            " NextSequenceToMain FROM Company");
        if (row.Step()) {
            facts.name = row.Text(0);
            facts.uniqueID = row.Text(1);
            facts.isMain = row.Integer(2) == suite::MainCompanyType;
            facts.syncState = row.Integer(3);
            facts.mainUniqueID = row.Text(4);
            facts.nextSequenceFromMain = row.Integer(5);
            facts.nextSequenceToMain = row.Integer(6);
        }
    }
    if (!facts.isMain) {
        facts.confirmed = suite::ConfirmedFiles(company, suite::MainReceiver);
        return facts;
    }
    const auto enabled = suite::GetCompanyOption(company, "Roaming Workstations", "EnableSync");
    facts.syncEnabled = text::ParseWholeNumber(enabled.value_or("0")).value_or(0) != 0;
    auto row = company.Prepare(
        "SELECT Name, UniqueID, SyncState, NextSequenceFromRoaming, NextSequenceToRoaming, LastReceivedFrom"
        " FROM RoamingWorkstations ORDER BY ID");
    while (row.Step()) {
        facts.workstations.push_back({std::string(row.Text(0)), std::string(row.Text(1)), row.Integer(2),
                                      row.Integer(3), row.Integer(4), std::string(row.Text(5)),
                                      suite::ConfirmedFiles(company, row.Text(1))});
    }
    return facts;
}

} // namespace qndr::observation
