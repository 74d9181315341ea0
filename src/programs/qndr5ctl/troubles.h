#pragma once

#include <string_view>

namespace qndr::control {

enum class Severity {
    Error,  ///< something is not exchanged until somebody acts
    Warning ///< somebody should look
};

/// A kind of trouble that can be proved. The codes are for machines: never change one.
struct TroubleKind {
    std::string_view code;
    Severity severity;
    std::string_view remedy; ///< with places {0} and {1}, which each section below explains
};

} // namespace qndr::control

namespace qndr::control::troubles {

// This computer. {0} is a file or a setting.

inline constexpr TroubleKind NoCompaniesLocation{"no-companies-location", Severity::Error,
                                                 "qndr5ctl location set Companies FOLDER"};
inline constexpr TroubleKind NoCompaniesFolder{
    "no-companies-folder", Severity::Error,
    "Connect or make the folder, or name another: qndr5ctl location set Companies FOLDER"};
inline constexpr TroubleKind NoCompany{
    "no-company", Severity::Error,
    "Name the folder of the .psd files: qndr5ctl location set Companies FOLDER; 'qndr5ctl company create' makes "
    "a company"};
inline constexpr TroubleKind NoSyncLocation{"no-sync-location", Severity::Error,
                                            "qndr5ctl location set Sync FOLDER"};
inline constexpr TroubleKind NoSyncFolder{
    "no-sync-folder", Severity::Error,
    "Connect the share or the cloud's folder, or name another: qndr5ctl location set Sync FOLDER"};
inline constexpr TroubleKind SyncFolderUnreadable{"sync-folder-unreadable", Severity::Error,
                                                  "Give this user the right to read the folder and its files"};
inline constexpr TroubleKind SyncFolderNotWritable{
    "sync-folder-not-writable", Severity::Error,
    "Give this user the right to write there, and see that there is room"};
inline constexpr TroubleKind SyncFolderNotCleanable{
    "sync-folder-not-cleanable", Severity::Error, "Give this user the right to delete there, then delete \"{0}\""};
inline constexpr TroubleKind ClockOff{
    "clock-off", Severity::Warning,
    "Set the clock of this computer or of the one that holds the folder; the five quiet minutes of a reset and "
    "the times in file names go by them"};
inline constexpr TroubleKind StopRequested{"stop-requested", Severity::Error,
                                           "Start the agent: qndr5rwsyncd; starting it withdraws the request"};
inline constexpr TroubleKind DebugLogOn{"debug-log-on", Severity::Warning,
                                        "qndr5ctl settings set DebugSyncAgent 0"};
inline constexpr TroubleKind MainNoResponse{
    "main-no-response", Severity::Error,
    "See that the agent runs on the main computer and reaches the same Sync folder"};
inline constexpr TroubleKind BadSetting{"bad-setting", Severity::Warning,
                                        "Write it anew: qndr5ctl settings set {0} VALUE"};

// One company. {0} is its .psd file, {1} this computer's name.

inline constexpr TroubleKind CompanyNotOpened{"company-not-opened", Severity::Error,
                                              "Mend \"{0}\" or its database, or take the file out of the folder"};
inline constexpr TroubleKind DatabaseDamaged{
    "database-damaged", Severity::Error,
    "Stop the agent and put a backup of the database of \"{0}\" in its place; a workstation can also be made "
    "anew with 'company create' and 'workstation add'"};
inline constexpr TroubleKind SameIdentity{
    "same-identity", Severity::Error,
    "Take the copy \"{0}\" out of use; a new workstation is made with 'company create' and 'workstation add'"};
inline constexpr TroubleKind SyncNotEnabled{"sync-not-enabled", Severity::Error,
                                            "qndr5ctl option set \"{0}\" \"Roaming Workstations\" EnableSync 1"};
inline constexpr TroubleKind WrongComputer{
    "wrong-computer", Severity::Error,
    "If this is the computer: qndr5ctl option set \"{0}\" \"Roaming Workstations\" SyncComputerName \"{1}\"; then "
    "start the agent anew"};
inline constexpr TroubleKind WrongRole{"wrong-role", Severity::Error, "qndr5ctl role roaming"};
inline constexpr TroubleKind ConflictsOpen{
    "conflicts-open", Severity::Warning,
    "qndr5ctl conflicts list \"{0}\", then 'conflicts restore' or 'conflicts dismiss' for each"};
inline constexpr TroubleKind CannotStore{"cannot-store", Severity::Error,
                                         "Make room on its disk, end the program that holds its database, or mend "
                                         "what the reason names; its agent then "
                                         "goes on by itself: qndr5ctl events \"{0}\""};
inline constexpr TroubleKind RecordsPutAside{
    "records-put-aside", Severity::Warning,
    "qndr5ctl problems list \"{0}\" tells why; enter them by hand or mend them where they come from"};

// A workstation and its main company. {0} is the workstation's .psd file, {1} main's, or a word where it is not at
// hand.

inline constexpr TroubleKind NotRegistered{"not-registered", Severity::Error,
                                           "qndr5ctl workstation add \"{1}\" \"{0}\""};
inline constexpr TroubleKind NeverAsked{"never-asked", Severity::Error,
                                        "qndr5ctl sync request-initial \"{0}\" --main \"{1}\""};
inline constexpr TroubleKind LostInitialSync{
    "lost-initial-sync", Severity::Error,
    "Stop both agents, then ask anew: qndr5ctl sync request-initial \"{0}\" --main \"{1}\""};
inline constexpr TroubleKind LostAcknowledge{
    "lost-acknowledge", Severity::Error,
    "Stop both agents, then ask anew: qndr5ctl sync request-initial \"{0}\" --main \"{1}\""};
inline constexpr TroubleKind LostReset{"lost-reset", Severity::Error,
                                       "Ask again: qndr5ctl sync request-reset \"{0}\""};
inline constexpr TroubleKind ResetStuck{"reset-stuck", Severity::Error,
                                        "Ask again: qndr5ctl sync request-reset \"{0}\""};
inline constexpr TroubleKind SequenceLost{
    "sequence-lost", Severity::Error,
    "In a cloud's folder wait until it is up to date; then qndr5ctl sync request-reset \"{0}\""};
inline constexpr TroubleKind SequenceAhead{"sequence-ahead", Severity::Error,
                                           "qndr5ctl sync request-reset \"{0}\""};
inline constexpr TroubleKind DuplicateSequence{"duplicate-sequence", Severity::Error,
                                               "qndr5ctl sync request-reset \"{0}\""};
inline constexpr TroubleKind ImportRefused{
    "import-refused", Severity::Error,
    "qndr5ctl sync request-reset \"{0}\"; the workstation's own values are kept: qndr5ctl conflicts list \"{0}\""};
inline constexpr TroubleKind SilentWorkstation{
    "silent-workstation", Severity::Warning,
    "See that its agent runs and reaches the Sync folder, unless nobody works there; 'qndr5ctl doctor' on that "
    "computer tells more"};

// Files in the Sync folder. {0} is the file.

inline constexpr TroubleKind LateFile{
    "late-file", Severity::Error,
    "Take \"{0}\" out of the Sync folder; where 'company compare' shows that its data is missing, 'sync "
    "request-reset'"};
inline constexpr TroubleKind StrayFile{"stray-file", Severity::Error, "Take \"{0}\" out of the Sync folder"};
inline constexpr TroubleKind DamagedFile{
    "damaged-file", Severity::Error,
    "In a cloud's folder wait until it is up to date; else take \"{0}\" out and ask its receiver what is missing"};
inline constexpr TroubleKind UnknownSender{
    "unknown-sender", Severity::Error,
    "'qndr5ctl workstation add' registers a new workstation; otherwise take \"{0}\" out of the Sync folder"};
inline constexpr TroubleKind UnclaimedFile{"unclaimed-file", Severity::Warning,
                                           "Take \"{0}\" out of the Sync folder unless another company awaits it"};
inline constexpr TroubleKind LyingFile{
    "lying-file", Severity::Warning,
    "See that the agent of the receiving computer runs and reaches the same Sync folder"};
inline constexpr TroubleKind HeartbeatUnanswered{"heartbeat-unanswered", Severity::Warning,
                                                 "See that main's agent runs and may delete files in the Sync "
                                                 "folder; 'qndr5ctl doctor --probe' there proves it"};
inline constexpr TroubleKind NotASyncFile{"not-a-sync-file", Severity::Warning,
                                          "Take \"{0}\" out of the Sync folder"};
inline constexpr TroubleKind UnfinishedCopy{"unfinished-copy", Severity::Warning, "Delete \"{0}\""};

} // namespace qndr::control::troubles
