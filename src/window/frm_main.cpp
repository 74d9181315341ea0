#include "window/frm_main.h"

#include "agent/schedule_guard.h"
#include "agent/stop_request.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/settings.h"
#include "shared/sync_log.h"
#include "text/letter_case.h"
#include "window/icons.h"
#include "window/task_dialog.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QUrl>

#include <array>
#include <sstream>

namespace qndr {
namespace {

using services::CurrentUserHive;
using settings::RootKey;

constexpr Qt::WindowFlags kWindowFlags = Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                         Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;

void SetText(QLabel* label, const std::string& text) {
    label->setText(QString::fromStdString(text));
}

} // namespace

frmMain::frmMain(AgentContext& context)
    : QWidget(nullptr, kWindowFlags), context_(context), controls_(BuildControls(*this)), tray_(this),
      scheduler_(context, *this, tray_) {
    setObjectName("frmMain");
    setWindowTitle("QNDR Roaming Workstation Sync");
    setWindowIcon(AgentIcon());
    BuildTimer(tmrSync_, "tmr_Sync", AgentScheduler::SyncInterval, [this] {
        RecoverSchedule(context_, scheduler_);
        scheduler_.TickSync();
    });
    BuildTimer(tmrExit_, "tmr_Exit", AgentScheduler::ExitInterval, [this] { scheduler_.TickExit(); });
    BuildTray();
    ConnectControls();
}

void frmMain::BuildTimer(QTimer& timer, const char* name, int interval, const std::function<void()>& tick) {
    timer.setObjectName(name);
    timer.setInterval(interval);
    // A coarse timer may be late by a twentieth of its interval.
    timer.setTimerType(Qt::PreciseTimer);
    // The tick is posted: inside the handler of its timer no further tick of that timer would arrive.
    const auto run = [this, tick] {
        if (!isUnloaded_) {
            tick();
        }
    };
    connect(&timer, &QTimer::timeout, this, run, Qt::QueuedConnection);
}

void frmMain::BuildTray() {
    mnuTray_.setObjectName("mnuTray");
    QAction* mnuShow = mnuTray_.addAction(WithMnemonic("Show", 'S'), this, &frmMain::Restore);
    mnuShow->setObjectName("mnuShow");
    mnuTray_.addSeparator()->setObjectName("mnuSep1");
    QAction* mnuExit = mnuTray_.addAction(WithMnemonic("Exit", 'x'), this,
                                          [this] { Attempt([&] { RequestStopSync(context_); }); });
    mnuExit->setObjectName("mnuExit");
    mnuTray_.setDefaultAction(mnuShow);
    tray_.setContextMenu(&mnuTray_);
    connect(&tray_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        // Many desktops tell of single clicks only.
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
            Restore();
        }
    });
}

// A box tells of each change, for assistive tools change it without a click. What the program itself sets is no
// change, or each refresh would write the settings, and the debug log would never reach its end.
void frmMain::ConnectControls() {
    connect(controls_.cmdClose, &QPushButton::clicked, this, &frmMain::HideToTray);
    connect(controls_.cmdSyncNow, &QPushButton::clicked, this, [this] { scheduler_.SyncNow(); });
    connect(controls_.sldFrequency, &QSlider::valueChanged, this, &frmMain::ChangeFrequency);
    WriteOnChange(controls_.chkKeep, settings::KeepSyncFiles);
    WriteOnChange(controls_.chkManageDeleted, settings::ManageDeleting);
    WriteOnChange(controls_.chkBackupOrders, settings::BackupOrderData);
    WriteOnChange(controls_.chkEnableHeartbeat, settings::EnableHeartbeat);
    connect(controls_.chkDebug, &QCheckBox::toggled, this, &frmMain::ChangeDebug);
    connect(controls_.cmdLogFolder, &QPushButton::clicked, this, &frmMain::OpenLogsFolder);
    connect(controls_.cmdOpenSyncFolder, &QPushButton::clicked, this, &frmMain::OpenSyncFolder);
}

void frmMain::WriteOnChange(QCheckBox* box, const char* setting) {
    connect(box, &QCheckBox::toggled, this, [this, setting](bool ticked) { SetNumber(setting, ticked ? 1 : 0); });
}

void frmMain::Load() {
    scheduler_.Load();
    tmrSync_.start();
    tmrExit_.start();
    tray_.show();
}

void frmMain::Restore() {
    showNormal();
    raise();
    activateWindow();
}

void frmMain::HideToTray() {
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        hide();
    } else {
        showMinimized();
    }
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (!scheduler_.MayClose()) {
        event->ignore();
        return;
    }
    event->accept();
    Unload();
}

void frmMain::StopTimers() {
    tmrExit_.stop();
    tmrSync_.stop();
}

void frmMain::Unload() {
    isUnloaded_ = true;
    StopTimers();
    tray_.hide();
    hide();
    QCoreApplication::exit();
}

void frmMain::FillLabels() {
    SetText(controls_.lblProfile, context_.Profile.empty() ? "Default" : context_.Profile);
    SetText(controls_.lblCompany, context_.CompaniesFolder);
    controls_.lblSyncFolder->clear();
    controls_.lblActivity->clear();

    std::array<std::string, 3> version; // major, minor and revision number
    Attempt([&] {
        std::istringstream numbers(context_.services.program.Version());
        for (std::string& number : version) {
            std::getline(numbers, number, '.');
        }
    });
    SetText(controls_.lblVersion, FormatString("Version {0}.{1}.{2}", version[0], version[1], version[2]));
}

void frmMain::ShowFrequency(std::int32_t minutes) {
    const QSignalBlocker noChange(controls_.sldFrequency);
    controls_.sldFrequency->setValue(minutes);
    RefreshFrequencyLabel();
}

void frmMain::RefreshFrequencyLabel() {
    SetText(controls_.lblFrequency, FormatString("Every {0} minutes", scheduler_.SyncFrequency()));
}

void frmMain::ChangeFrequency() {
    if (controls_.sldFrequency->value() < 1) {
        const QSignalBlocker sameChange(controls_.sldFrequency);
        controls_.sldFrequency->setValue(1);
    }
    scheduler_.SetSyncFrequency(controls_.sldFrequency->value());
    RefreshFrequencyLabel();
    if (context_.OperatingMode == 1) {
        // The text of a date is no number: this fails each time, and the value stays unwritten.
        Attempt([&] {
            const Variant now(FormatGeneralDate(context_.services.clock.Now()));
            context_.services.registryTools.SetLong(CurrentUserHive, RootKey, settings::SyncSettingsUpdated,
                                                    now.ToLong());
        });
    }
}

void frmMain::ShowActivity(const std::string& text) {
    SetText(controls_.lblActivity, text);
}

void frmMain::RefreshStatus() {
    for (QCheckBox* box :
         {controls_.chkDebug, controls_.chkKeep, controls_.chkBackupOrders, controls_.chkManageDeleted}) {
        box->setEnabled(true);
    }
    RefreshSyncFolder();
    RefreshCheckBoxes();
    RefreshHeartbeat();
    RefreshDate(controls_.lblLastSync, settings::LastSync);
    RefreshDate(controls_.lblNextSync, settings::NextSync);
    RefreshFileCount();
}

void frmMain::RefreshSyncFolder() {
    const std::string& folder = context_.SyncFolder;
    SetText(controls_.lblSyncFolder, folder.empty() ? "Checking..." : folder);
    controls_.cmdOpenSyncFolder->setEnabled(!folder.empty());
}

void frmMain::RefreshCheckBoxes() {
    services::RegistryTools& registry = context_.services.registryTools;
    const auto setTick = [](QCheckBox* box, bool ticked) {
        const QSignalBlocker noChange(box);
        box->setChecked(ticked);
    };
    Attempt([&] {
        // The log is on only at exactly 1.
        setTick(controls_.chkDebug, registry.GetLong(CurrentUserHive, RootKey, settings::DebugSyncAgent, 0) == 1);
    });
    const auto refresh = [&](QCheckBox* box, const char* setting, std::int32_t fallback) {
        Attempt([&] { setTick(box, registry.GetLong(CurrentUserHive, RootKey, setting, fallback) != 0); });
    };
    refresh(controls_.chkKeep, settings::KeepSyncFiles, 0);
    refresh(controls_.chkEnableHeartbeat, settings::EnableHeartbeat, 1);
    refresh(controls_.chkBackupOrders, settings::BackupOrderData, 1);
    refresh(controls_.chkManageDeleted, settings::ManageDeleting, 1);
}

void frmMain::RefreshHeartbeat() {
    if (!controls_.chkEnableHeartbeat->isChecked()) {
        SetText(controls_.lblHeartbeat, "N/A");
        return;
    }
    std::int32_t heartbeat = 0;
    Attempt([&] {
        heartbeat = context_.services.registryTools.GetLong(CurrentUserHive, RootKey, settings::SyncHeartbeat, 0);
    });
    if (heartbeat == 0) {
        SetText(controls_.lblHeartbeat, "Pending");
    } else if (heartbeat == 1) {
        SetText(controls_.lblHeartbeat, "OK");
    } else if (heartbeat == 2) {
        SetText(controls_.lblHeartbeat, "No response from main");
    }
}

void frmMain::RefreshDate(QLabel* label, const char* setting) {
    std::string text;
    Attempt([&] { text = context_.services.registryTools.GetString(CurrentUserHive, RootKey, setting, ""); });
    const auto date = ParseDate(text);
    SetText(label, date ? FormatGeneralDate(*date) : "N/A");
}

void frmMain::RefreshFileCount() {
    if (context_.SyncFolder.empty()) {
        SetText(controls_.lblFileCount, "Checking...");
        return;
    }
    std::vector<std::string> files;
    Attempt([&] { files = context_.services.pathTools.FindFiles(context_.SyncFolder, "*.*", false); });
    int total = 0;
    int forMain = 0;
    int forRoaming = 0;
    // The path is looked for in the id and not the id in the path, so that both of these stay 0. People know the
    // label like this: not to be turned round.
    const auto liesIn = [](const std::string& file, const std::string& uniqueId) {
        return !uniqueId.empty() && text::ToLowerCase(uniqueId).find(text::ToLowerCase(file)) != std::string::npos;
    };
    for (const std::string& file : files) {
        if (!file.empty()) {
            ++total;
            forMain += liesIn(file, context_.MainUniqueID) ? 1 : 0;
            forRoaming += liesIn(file, context_.RoamingUniqueID) ? 1 : 0;
        }
    }
    SetText(controls_.lblFileCount, FormatString("{0}/{1}/{2}", total, forMain, forRoaming));
}

void frmMain::SetNumber(const char* setting, std::int32_t value) {
    Attempt([&] { context_.services.registryTools.SetLong(CurrentUserHive, RootKey, setting, value); });
}

void frmMain::ChangeDebug(bool ticked) {
    SetNumber(settings::DebugSyncAgent, ticked ? 1 : 0);
    Attempt([&] {
        const std::string start = ticked ? FormatGeneralDate(context_.services.clock.Now()) : "";
        context_.services.registryTools.SetString(CurrentUserHive, RootKey, settings::DebugSyncAgentStartDate,
                                                  start);
    });
}

void frmMain::OpenLogsFolder() {
    OpenFolder(GetLogsFolder(context_), "The logs folder does not exist.",
               "This folder only gets created when a log file is created.");
}

void frmMain::OpenSyncFolder() {
    if (!context_.SyncFolder.empty()) {
        OpenFolder(context_.SyncFolder, "The sync folder does not exist.",
                   "Check your File Locations in the Velmoran Ordergrove Suite.");
    }
}

void frmMain::OpenFolder(const std::string& folder, const char* missing, const char* hint) {
    if (Holds([&] { return context_.services.pathTools.FolderExists(folder); })) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(folder)));
    } else {
        (new frmTaskDialog(this, missing, hint))->open();
    }
}

} // namespace qndr
