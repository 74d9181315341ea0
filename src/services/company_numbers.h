#pragma once

#include <cstdint>

/// What those numbers in a company's tables mean that both sides of the seam write. Stored: never change one.
namespace qndr {

/// How far one pairing has come. One set of numbers serves `Company.SyncState` of a Roaming Workstation company
/// and `RoamingWorkstations.SyncState` of a main company. A sync descriptor has numbers of its own
/// (syncfiles/descriptor.h); two of them coincide with these by chance.
enum SyncState : std::int16_t {
    SyncStateNone = 0,                 ///< the main company's own row
    SyncStateInitialSyncRequired = 1,  ///< workstation: has to ask; main: owes this row an initial sync
    SyncStateInitialSyncRequested = 2, ///< workstation: has asked; main: not used
    SyncStateInitialSyncSent = 3,      ///< workstation: not used; main: awaits the acknowledge
    SyncStateReady = 4,                ///< normal running
    SyncStateResetRequested = 5,       ///< workstation: has to ask for a reset; main: owes the full data
    SyncStateResetPending = 6,         ///< workstation: awaits the full data; main: drains the workstation's files
};

/// AuditLog.AuditType.
enum AuditType : std::int16_t { AuditInsertion = 1, AuditUpdate = 2, AuditDeletion = 3 };

} // namespace qndr
