#pragma once

#include <array>
#include <string_view>

namespace qndr::diagnosis {

enum class Severity {
    Error,   ///< something is not exchanged until somebody acts
    Warning, ///< somebody should look
    Note     ///< good to know; nothing is wrong
};

/// A kind of trouble that can be proved. The codes are for machines: never change one.
struct TroubleKind {
    std::string_view code;
    Severity severity;
    /// What to do, with places {0}, {1} and {2}, which each section below explains. Only commands that need no
    /// decision stand beside it, to be run as they are.
    std::string_view remedy;
    std::array<std::string_view, 2> commands = {};
};

} // namespace qndr::diagnosis

namespace qndr::diagnosis::troubles {

// This computer. {0} is a file, a folder or a setting.

inline constexpr TroubleKind NoCompaniesLocation{"no-companies-location", Severity::Error,
                                                 "qndr5ctl location set Companies FOLDER"};
inline constexpr TroubleKind NoCompaniesFolder{
    "no-companies-folder", Severity::Error,
    "Connect or make the folder, or name another: qndr5ctl location set Companies FOLDER"};
inline constexpr TroubleKind NoCompany{
    "no-company", Severity::Error,
    "Name the folder of the .psd files: qndr5ctl location set Companies FOLDER; 'qndr5ctl company create' makes "
    "a company"};
inline constexpr TroubleKind NoTemporaryFolder{
    "no-temporary-folder", Severity::Error,
    "Have {0} deleted, or see that there is room and a right to write; TMPDIR names another place"};
inline constexpr TroubleKind TemporaryFolderElsewhere{
    "temporary-folder-elsewhere", Severity::Warning,
    "See who made {0}, and have it deleted; TMPDIR names another place"};
inline constexpr TroubleKind StopRequested{"stop-requested", Severity::Error,
                                           "Start the agent: qndr5rwsyncd; starting it withdraws the request"};
inline constexpr TroubleKind AgentIdle{
    "agent-idle", Severity::Warning,
    "Start the agent: qndr5rwsync, or qndr5rwsyncd where nobody sits; when it runs, 'qndr5ctl log' tells what "
    "keeps it"};
inline constexpr TroubleKind ClockWentBack{
    "clock-went-back",
    Severity::Warning,
    "Look at the clock. When it is right, end the agent; its first pass after a start sets both times anew",
    {"qndr5ctl stop", "qndr5ctl settings set NextSync ''"}};
inline constexpr TroubleKind RoleUnset{
    "role-unset", Severity::Note, "Say what it is; without a word it is a main computer", {"qndr5ctl role main"}};
inline constexpr TroubleKind DebugLogOn{
    "debug-log-on", Severity::Note, "When it is not needed any more", {"qndr5ctl settings set DebugSyncAgent 0"}};
inline constexpr TroubleKind MainNoResponse{
    "main-no-response", Severity::Error,
    "See that the agent runs on the main computer and reaches the same Sync folder"};
inline constexpr TroubleKind BadSetting{"bad-setting", Severity::Warning,
                                        "Write it anew: qndr5ctl settings set {0} VALUE"};
inline constexpr TroubleKind LowSpace{"low-space", Severity::Warning, "Make room at {0}"};

// The Sync folder. {0} is the folder or a file in it, {1} the folder where a file belongs.

inline constexpr TroubleKind NoSyncLocation{"no-sync-location", Severity::Error,
                                            "qndr5ctl location set Sync FOLDER"};
inline constexpr TroubleKind NoSyncFolder{
    "no-sync-folder", Severity::Error,
    "Connect the share or the cloud's folder, or name another: qndr5ctl location set Sync FOLDER"};
inline constexpr TroubleKind SyncFolderUnreadable{"sync-folder-unreadable", Severity::Error,
                                                  "Give this user the right to read the folder and its files"};
inline constexpr TroubleKind SyncFolderWrong{
    "sync-folder-wrong",
    Severity::Error,
    "Connect the share, or let the cloud's folder come up to date. Only when this is the right folder",
    {"qndr5ctl location set Sync {0}"}};
inline constexpr TroubleKind SyncFolderUnmarked{"sync-folder-unmarked",
                                                Severity::Note,
                                                "While the right folder is there, let this computer remember it",
                                                {"qndr5ctl location set Sync {0}"}};
inline constexpr TroubleKind SyncFolderNotWritable{
    "sync-folder-not-writable", Severity::Error,
    "Give this user the right to write there, and see that there is room"};
inline constexpr TroubleKind SyncFolderNotCleanable{
    "sync-folder-not-cleanable",
    Severity::Error,
    "Give this user the right to rename and delete there, and keep the agents stopped until then: what cannot be "
    "deleted is taken twice. Then",
    {"rm -f {0}"}};
inline constexpr TroubleKind SyncFolderSticky{
    "sync-folder-sticky",
    Severity::Warning,
    "Unless all computers write there as one user, let every user delete",
    {"chmod -t {0}"}};
inline constexpr TroubleKind ClockOff{
    "clock-off", Severity::Warning,
    "Set the clock of this computer or of the one that holds the folder; the five quiet minutes of a reset and "
    "the times in file names go by them"};
inline constexpr TroubleKind FoldersNested{
    "folders-nested", Severity::Warning,
    "Companies must not lie where files are exchanged: name another Sync folder on all computers: qndr5ctl "
    "location set Sync FOLDER"};
inline constexpr TroubleKind FileInFormerFolder{
    "file-in-former-folder",
    Severity::Error,
    "It was dropped while this computer used another Sync folder. Bring it where the others look for it",
    {"mv -n {0} {1}"}};

// One company. {0} is its .psd file, {1} this computer's name or another .psd file.

inline constexpr TroubleKind CompanyNotOpened{"company-not-opened", Severity::Error,
                                              "Mend {0} or its database, or take the file out of the folder"};
inline constexpr TroubleKind CompanyOlder{"older-company",
                                          Severity::Warning,
                                          "Let its agent make a pass, or bring it up to date at once",
                                          {"qndr5ctl company show {0}"}};
inline constexpr TroubleKind DatabaseDamaged{
    "database-damaged", Severity::Error,
    "Stop the agent and put a backup of the database of {0} in its place; a workstation can also be made "
    "anew with 'company create' and 'workstation add'"};
inline constexpr TroubleKind SameIdentity{
    "same-identity", Severity::Error,
    "Keep the one that people work in, which is as a rule the one with the newer change, and take the .psd file "
    "of "
    "the other one out of the folder; a new workstation is made with 'company create' and 'workstation add'"};
inline constexpr TroubleKind SameDatabase{"same-database",
                                          Severity::Warning,
                                          "One file is enough, and either will do; the younger one goes",
                                          {"mv -n {0} {0}.copy"}};
inline constexpr TroubleKind SyncNotEnabled{
    "sync-not-enabled", Severity::Error, "", {"qndr5ctl option set {0} 'Roaming Workstations' EnableSync 1"}};
inline constexpr TroubleKind NoComputerNamed{
    "wrong-computer",
    Severity::Error,
    "If this is the computer that is to sync it, and no other one does; then start the agent anew",
    {"qndr5ctl option set {0} 'Roaming Workstations' SyncComputerName {1}"}};
inline constexpr TroubleKind WrongComputer{
    "wrong-computer", Severity::Error,
    "Two computers that run copies of one main company spoil both: which one lives? If the other one does, take "
    "{0} out of the folder here. If the company has moved to this computer, take it out of use there first "
    "(qndr5ctl "
    "option set FILE 'Roaming Workstations' EnableSync 0), then here: qndr5ctl option set {0} 'Roaming "
    "Workstations' "
    "SyncComputerName {1}, and start the agent anew"};
inline constexpr TroubleKind WrongRole{"wrong-role", Severity::Error, "", {"qndr5ctl role roaming"}};
inline constexpr TroubleKind MainAsRoaming{"main-as-roaming", Severity::Error, "", {"qndr5ctl role main"}};
inline constexpr TroubleKind MisplacedWorkstation{
    "misplaced-workstation", Severity::Error,
    "Move {0} and its database to the Companies folder of the workstation's own computer"};
inline constexpr TroubleKind TwoAgents{
    "two-agents", Severity::Warning,
    "Let one agent alone work on {0}: end the other one ('qndr5ctl stop' as its user), or take the company out of "
    "its Companies folder"};
inline constexpr TroubleKind ConflictsOpen{"conflicts-open",
                                           Severity::Warning,
                                           "Then 'conflicts restore' or 'conflicts dismiss' for each",
                                           {"qndr5ctl conflicts list {0}"}};
inline constexpr TroubleKind CannotStore{"cannot-store",
                                         Severity::Error,
                                         "Make room on its disk, end the program that holds its database, or mend "
                                         "what the reason names; its agent then "
                                         "goes on by itself",
                                         {"qndr5ctl events {0}"}};
inline constexpr TroubleKind RecordsPutAside{
    "records-put-aside",
    Severity::Warning,
    "The list tells why; enter them by hand or mend them where they come from",
    {"qndr5ctl problems list {0}"}};

// A workstation and its main company. {0} is the workstation's .psd file, {1} main's, or a word where it is not at
// hand, {2} the Sync folder.

inline constexpr std::string_view AskAnew = "qndr5ctl sync request-initial {0} --main {1} --sync {2}";
inline constexpr std::string_view Reset = "qndr5ctl sync request-reset {0} --yes";
inline constexpr std::string_view AskAnewWords =
    "Stop both agents, ask anew, which also takes out the old files of the two, and start the agents";

inline constexpr TroubleKind NotRegistered{
    "not-registered", Severity::Error, "", {"qndr5ctl workstation add {1} {0}"}};
inline constexpr TroubleKind NeverAsked{"never-asked", Severity::Error, AskAnewWords, {AskAnew}};
inline constexpr TroubleKind LostInitialSync{"lost-initial-sync", Severity::Error, AskAnewWords, {AskAnew}};
inline constexpr TroubleKind LostAcknowledge{"lost-acknowledge", Severity::Error, AskAnewWords, {AskAnew}};
inline constexpr TroubleKind LostReset{"lost-reset", Severity::Error, "Ask again", {Reset}};
inline constexpr TroubleKind ResetStuck{"reset-stuck", Severity::Error, "Ask again", {Reset}};
inline constexpr TroubleKind SequenceLost{
    "sequence-lost", Severity::Error, "In a cloud's folder wait until it is up to date; then", {Reset}};
inline constexpr TroubleKind SequenceAhead{"sequence-ahead", Severity::Error, "", {Reset}};
inline constexpr TroubleKind DuplicateSequence{"duplicate-sequence", Severity::Error, "", {Reset}};
inline constexpr TroubleKind UnconfirmedFiles{
    "unconfirmed-files", Severity::Warning,
    "Compare with what 'qndr5ctl workstation list' says on main. Where its number is lower: look for the files in "
    "a "
    "folder that was the Sync folder before, and otherwise ask for a reset: qndr5ctl sync request-reset {0}"};
inline constexpr TroubleKind OneSideOnly{"one-side-only", Severity::Note,
                                         "Compare with the other computer, or name its Companies folder too"};
inline constexpr TroubleKind ImportRefused{
    "import-refused", Severity::Error, "The workstation's own values are kept among its conflicts", {Reset}};
inline constexpr TroubleKind SilentWorkstation{
    "silent-workstation", Severity::Warning,
    "See that its agent runs and reaches the Sync folder, unless nobody works there; 'qndr5ctl doctor' on that "
    "computer tells more"};

// Files in the Sync folder. {0} is the file, {1} the .psd file of its receiver or the file's proper path.

inline constexpr TroubleKind LateFile{"late-file",
                                      Severity::Error,
                                      "While the agent of that computer is stopped, import it by hand, which "
                                      "loses nothing: what is there already stays, and "
                                      "what loses is kept. Then take it out",
                                      {"qndr5ctl file import {0} {1}", "qndr5ctl file take-out {0}"}};
inline constexpr TroubleKind LateFullData{
    "late-file", Severity::Error, "It is not needed any more", {"qndr5ctl file take-out {0}"}};
inline constexpr TroubleKind StrayFile{"stray-file", Severity::Error, "", {"qndr5ctl file take-out {0}"}};
inline constexpr TroubleKind DamagedFile{"damaged-file",
                                         Severity::Error,
                                         "In a cloud's folder wait until it is up to date; else",
                                         {"qndr5ctl file take-out {0}"}};
// Of these two {0} and {1} are the .psd files of the workstation and of main, {2} the Sync folder, {3} the file.
inline constexpr TroubleKind DamagedNextFile{"damaged-file",
                                             Severity::Error,
                                             "In a cloud's folder wait until it is up to date; else",
                                             {"qndr5ctl file take-out {3}", Reset}};
inline constexpr TroubleKind DamagedFirstFile{
    "damaged-file",
    Severity::Error,
    "In a cloud's folder wait until it is up to date; else stop both agents, ask anew, and start them",
    {"qndr5ctl file take-out {3}", AskAnew}};
inline constexpr TroubleKind MisnamedFile{
    "misnamed-file", Severity::Error, "Give it its name back", {"mv -n {0} {1}"}};
inline constexpr TroubleKind UnregisteredRequest{"unregistered-request", Severity::Warning,
                                                 "Leave it where it lies when another main company uses this "
                                                 "folder: it is that one's to take. A new workstation "
                                                 "of this one is registered with 'qndr5ctl workstation add'"};
inline constexpr TroubleKind UnknownSender{"unknown-sender",
                                           Severity::Error,
                                           "'qndr5ctl workstation add' registers a new workstation; otherwise",
                                           {"qndr5ctl file take-out {0}"}};
inline constexpr TroubleKind UnclaimedFile{
    "unclaimed-file", Severity::Warning,
    "Leave it where it lies when another company uses this folder; otherwise: qndr5ctl file take-out {0}"};
inline constexpr TroubleKind LyingFile{
    "lying-file", Severity::Warning,
    "See that the agent of the receiving computer runs and reaches the same Sync folder"};
inline constexpr TroubleKind HeartbeatUnanswered{
    "heartbeat-unanswered", Severity::Warning,
    "See that main's agent runs and may delete files in the Sync folder; 'qndr5ctl doctor' there proves it"};
inline constexpr TroubleKind NotASyncFile{
    "not-a-sync-file", Severity::Warning, "", {"qndr5ctl file take-out {0}"}};
inline constexpr TroubleKind UnfinishedCopy{"unfinished-copy", Severity::Warning, "", {"rm {0}"}};

} // namespace qndr::diagnosis::troubles
