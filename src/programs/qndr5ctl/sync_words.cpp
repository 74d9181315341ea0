#include "programs/qndr5ctl/sync_words.h"

#include "suite/company/company_creation.h"
#include "syncfiles/descriptor.h"
#include "syncfiles/sync_state.h"

namespace qndr::control {

std::string WordsForCompanyState(std::int64_t state) {
    switch (state) {
    case SyncStateNone:
        return "none";
    case SyncStateInitialSyncRequired:
        return "initial sync required";
    case SyncStateInitialSyncRequested:
        return "initial sync requested";
    case SyncStateReady:
        return "ready";
    case SyncStateResetRequested:
        return "Reset Requested";
    case SyncStateResetPending:
        return "reset pending, full data awaited";
    default:
        return "unknown";
    }
}

std::string WordsForWorkstationState(std::int64_t state) {
    switch (state) {
    case SyncStateNone:
        return "none, request awaited";
    case SyncStateInitialSyncRequired:
        return "initial sync requested";
    case SyncStateInitialSyncSent:
        return "initial sync sent, acknowledge awaited";
    case SyncStateReady:
        return "ready";
    case SyncStateResetRequested:
        return "Reset Requested";
    case SyncStateResetPending:
        return "reset pending, draining files";
    default:
        return "unknown";
    }
}

std::string WordsForDescriptorState(std::int64_t state) {
    switch (state) {
    case SyncFileInitialSyncRequest:
        return "initial sync requested";
    case SyncFileInitialSync:
        return "initial sync data";
    case SyncFileReady:
        return "ready";
    default:
        return "unknown";
    }
}

std::string WordsForCompanyType(std::int64_t type) {
    return type == suite::MainCompanyType      ? "main company"
           : type == suite::RoamingCompanyType ? "Roaming Workstation"
                                               : "unknown";
}

std::string NumberInWords(std::int64_t number, const std::string& words) {
    return std::to_string(number) + " (" + words + ")";
}

} // namespace qndr::control
