#include "programs/qndr5ctl/known_settings.h"

#include "shared/settings.h"
#include "text/letter_case.h"

#include <algorithm>
#include <array>

namespace qndr::control {

namespace {

using settings::RootKey;

constexpr std::array Known{
    KnownSetting{settings::SyncFrequency, SettingKind::Number, RootKey, "5", "minutes between passes", 1, 60},
    KnownSetting{settings::ProofHours, SettingKind::Number, RootKey, "24",
                 "hours between proofs that both ends of a pairing hold the same, 0 for none", 0, 8760},
    KnownSetting{settings::MendMinutes, SettingKind::Number, RootKey, "60",
                 "minutes that a pairing is out of step before it asks anew by itself, 0 for never", 0, 10080},
    KnownSetting{settings::NextSync, SettingKind::Date, RootKey, "", "when the next pass is due"},
    KnownSetting{settings::LastSync, SettingKind::Date, RootKey, "", "when the last pass ended"},
    KnownSetting{settings::StopSync, SettingKind::Number, RootKey, "0", "1 asks the agent to exit"},
    KnownSetting{settings::SyncHeartbeat, SettingKind::Number, RootKey, "0",
                 "main's answer: 0 pending, 1 OK, 2 no response", 0, 2},
    KnownSetting{settings::EnableHeartbeat, SettingKind::Number, RootKey, "1", "1 turns the heartbeat on"},
    KnownSetting{settings::KeepSyncFiles, SettingKind::Number, RootKey, "0", "1 keeps backups of sync data"},
    KnownSetting{settings::ManageDeleting, SettingKind::Number, RootKey, "1",
                 "1 turns the managed deleting of sync files on"},
    KnownSetting{settings::BackupOrderData, SettingKind::Number, RootKey, "1", "1 keeps backups of order data"},
    KnownSetting{settings::DebugSyncAgent, SettingKind::Number, RootKey, "0",
                 "1 turns the sync log on, for seven days"},
    KnownSetting{settings::DebugSyncAgentStartDate, SettingKind::Date, RootKey, "",
                 "when the sync log was turned on"},
    KnownSetting{settings::CompaniesLocation, SettingKind::Text, settings::DefaultProfileKey, "",
                 "folder of the company files"},
    KnownSetting{"UFL:Sync", SettingKind::Text, settings::DefaultProfileKey, "",
                 "Sync folder; 'location set' also remembers its mark"},
    KnownSetting{"RoamingWorkstation", SettingKind::Number, settings::DefaultProfileKey, "0",
                 "1 on a Roaming Workstation; 'role' sets it"},
};

} // namespace

std::span<const KnownSetting> KnownSettings() {
    return Known;
}

const KnownSetting* FindKnownSetting(std::string_view name, std::string_view key) {
    const auto* found = std::find_if(Known.begin(), Known.end(), [&](const KnownSetting& setting) {
        return text::EqualsWithoutCase(setting.name, name) &&
               (key.empty() || text::EqualsWithoutCase(setting.key, key));
    });
    return found == Known.end() ? nullptr : found;
}

} // namespace qndr::control
