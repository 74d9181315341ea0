#include "suite/schema/vocabulary.h"

#include "text/editing.h"

#include <utility>

namespace qndr::suite {

namespace {

constexpr std::pair<std::string_view, std::int64_t> Numbers[] = {
    {"{Roaming}", RoamingCompanyType},
    {"{Insertion}", AuditInsertion},
    {"{Update}", AuditUpdate},
    {"{Deletion}", AuditDeletion},
    {"{GivenUp}", static_cast<std::int64_t>(ConflictReason::GivenUp)},
    {"{NotConfirmed}", static_cast<std::int64_t>(ConflictReason::NotConfirmed)},
    {"{InitialSyncRequired}", SyncStateInitialSyncRequired},
    {"{InitialSyncRequested}", SyncStateInitialSyncRequested},
    {"{InitialSyncSent}", SyncStateInitialSyncSent},
    {"{Ready}", SyncStateReady},
    {"{ResetRequested}", SyncStateResetRequested},
    {"{ResetPending}", SyncStateResetPending},
};

} // namespace

std::string WithNumbers(std::string_view sql) {
    std::string filled(sql);
    for (const auto& [word, number] : Numbers) {
        filled = text::ReplaceAll(filled, word, std::to_string(number));
    }
    return filled;
}

} // namespace qndr::suite
