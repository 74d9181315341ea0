#include "agent/agent_test.h"
#include "window/frm_main.h"
#include "window/qt_messages.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QMessageBox>
#include <QSlider>
#include <QTabWidget>
#include <QTest>
#include <QUrl>

namespace qndr::testing {
namespace {

constexpr const char* kTitle = "QNDR 5.0 Roaming Workstation Sync";

/// Stands in for the desktop's file manager.
class FileManager : public QObject {
    Q_OBJECT
  public:
    FileManager() { QDesktopServices::setUrlHandler("file", this, "Open"); }
    ~FileManager() override { QDesktopServices::unsetUrlHandler("file"); }
    Lines opened;

  public slots:
    void Open(const QUrl& url) { opened.push_back(url.toLocalFile().toStdString()); }
};

/// The window of a main computer: real settings, files and companies, messages of the toolkit, virtual clock.
class FrmMainTest : public AgentTest {
  protected:
    FrmMainTest() { agent.CompaniesFolder = Path("Companies"); }

    void Show(int page = 0) {
        window.Load();
        window.show();
        window.findChild<QTabWidget*>("TabControl1")->setCurrentIndex(page);
    }
    template <typename Control> Control& Find(const char* name) { return *window.findChild<Control*>(name); }
    std::string Text(const char* label) { return Find<QLabel>(label).text().toStdString(); }
    void Click(const char* name) {
        // Only the mark and the caption of a wide check box take a click.
        auto& button = Find<QAbstractButton>(name);
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
    }
    /// Lets the timer reach its time; its work is done by the messages that are processed next.
    void Fire(const char* timer) {
        QTimerEvent event(Find<QTimer>(timer).timerId());
        QCoreApplication::sendEvent(&Find<QTimer>(timer), &event);
    }
    void Tick(const char* timer) {
        Fire(timer);
        messages.ProcessMessages();
    }
    /// Runs a pass at once, with `act` among the first messages that it lets through.
    void RunPass(const std::function<void()>& act = [] {}) {
        Click("cmdSyncNow");
        Fire("tmr_Sync");
        QMetaObject::invokeMethod(&window, act, Qt::QueuedConnection);
        messages.ProcessMessages();
    }
    std::string Now(std::int64_t minutes = 0) { return FormatGeneralDate(time.Now().AddMinutes(minutes)); }

    QtMessages messages;
    ComputerServices windowOutside{computer, {time, messages, time}, "qndr5rwsync", {}, &gate};
    AgentContext agent{Replacing(windowOutside.Services(), log, windowOutside.Services().timers)};
    frmMain window{agent};
};

TEST_F(FrmMainTest, FirstStartShowsTheDefaults) {
    agent.Profile = "Field";
    Show();
    EXPECT_EQ(Text("lblVersion"), "Version 5.0.169");
    EXPECT_EQ(Text("lblProfile"), "Field");
    EXPECT_EQ(Text("lblCompany"), Path("Companies"));
    EXPECT_EQ(Text("lblSyncFolder"), "Checking...");
    EXPECT_EQ(Text("lblFileCount"), "Checking...");
    EXPECT_EQ(Text("lblHeartbeat"), "Pending");
    EXPECT_EQ(Text("lblLastSync"), "N/A");
    EXPECT_EQ(Text("lblNextSync"), Now(1));
    EXPECT_EQ(Text("lblFrequency"), "Every 5 minutes");
    EXPECT_FALSE(Find<QAbstractButton>("cmdOpenSyncFolder").isEnabled());
    EXPECT_FALSE(Find<QLabel>("lblNotResponsible").isVisibleTo(&window));

    SetText(settings::RootKey, settings::NextSync, "soon");
    SetText(settings::RootKey, settings::LastSync, "2026-11-31 10:00:00");
    Tick("tmr_Sync");
    EXPECT_EQ(Text("lblNextSync"), "N/A");
    EXPECT_EQ(Text("lblLastSync"), "N/A");
    window.Load();
    EXPECT_EQ(Text("lblNextSync"), Now(1));
}

TEST_F(FrmMainTest, CheckBoxesWriteWhenClickedAndNeverWhenRefreshed) {
    SetNumber(settings::DebugSyncAgent, 0);
    Show(2);
    const auto stored = [&](const std::string& setting) {
        return registry.GetLong(services::CurrentUserHive, settings::RootKey, setting, 7);
    };
    struct Box {
        const char* name;
        const char* setting;
        int fallback;
    };
    for (const Box& box : {Box{"chkKeep", settings::KeepSyncFiles, 0},
                           {"chkManageDeleted", settings::ManageDeleting, 1},
                           {"chkBackupOrders", settings::BackupOrderData, 1},
                           {"chkEnableHeartbeat", settings::EnableHeartbeat, 1},
                           {"chkDebug", settings::DebugSyncAgent, 0}}) {
        SCOPED_TRACE(box.name);
        EXPECT_EQ(Find<QCheckBox>(box.name).isChecked(), box.fallback == 1);
        EXPECT_EQ(stored(box.setting), box.name == std::string("chkDebug") ? 0 : 7);
        Click(box.name);
        EXPECT_EQ(stored(box.setting), 1 - box.fallback);
        QAccessible::queryAccessibleInterface(&Find<QCheckBox>(box.name))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
        EXPECT_EQ(stored(box.setting), box.fallback);
        Click(box.name);
    }

    const std::string start = Now();
    EXPECT_EQ(ReadSetting(settings::DebugSyncAgentStartDate), start);
    time.SetNow(time.Now().AddMinutes(-60));
    SetNumber(settings::DebugSyncAgent, 0);
    SetNumber(settings::KeepSyncFiles, -1);
    Tick("tmr_Sync");
    EXPECT_FALSE(Find<QCheckBox>("chkDebug").isChecked());
    EXPECT_TRUE(Find<QCheckBox>("chkKeep").isChecked());
    EXPECT_EQ(ReadNumber(settings::KeepSyncFiles), -1);
    SetNumber(settings::DebugSyncAgent, 1);
    Tick("tmr_Sync");
    EXPECT_EQ(ReadSetting(settings::DebugSyncAgentStartDate), start);
    Click("chkDebug");
    EXPECT_EQ(ReadNumber(settings::DebugSyncAgent), 0);
    EXPECT_EQ(ReadSetting(settings::DebugSyncAgentStartDate), "");
    SetNumber(settings::DebugSyncAgent, 2);
    Tick("tmr_Sync");
    EXPECT_FALSE(Find<QCheckBox>("chkDebug").isChecked()) << "the log is off at 2";
}

TEST_F(FrmMainTest, ControlsAndTimersReachTheScheduler) {
    AddMain("acme");
    SetNumber(settings::SyncFrequency, 99);
    Show(2);
    EXPECT_EQ(Find<QTimer>("tmr_Sync").interval(), 60'000);
    EXPECT_EQ(Find<QTimer>("tmr_Exit").interval(), 5'000);

    auto& slider = Find<QSlider>("sldFrequency");
    EXPECT_EQ(slider.value(), 60);
    EXPECT_EQ(Text("lblFrequency"), "Every 99 minutes");
    EXPECT_EQ(ReadNumber(settings::SyncFrequency), 99) << "a load is no change";
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(&slider, key);
        EXPECT_EQ(ReadNumber(settings::SyncFrequency), slider.value());
        return Text("lblFrequency");
    };
    EXPECT_EQ(press(Qt::Key_Home), "Every 1 minutes");
    EXPECT_EQ(press(Qt::Key_PageUp), "Every 16 minutes");

    Click("cmdSyncNow");
    EXPECT_EQ(Text("lblNextSync"), Now());
    EXPECT_EQ(TakeLog(), Lines{});
    RunPass([this] {
        Tick("tmr_Sync");
        Tick("tmr_Exit");
        EXPECT_EQ(Text("lblActivity"), "Starting sync");
    });
    const Lines passLog = TakePassLog();
    EXPECT_EQ(std::ranges::count(passLog, "Starting Sync"), 1);
    EXPECT_EQ(Text("lblLastSync"), Now());
    EXPECT_EQ(Text("lblNextSync"), Now(16));
    EXPECT_EQ(Text("lblSyncFolder"), Path("Sync"));
    EXPECT_EQ(Text("lblHeartbeat"), "OK");
    EXPECT_TRUE(Find<QAbstractButton>("cmdOpenSyncFolder").isEnabled());
    EXPECT_EQ(Text("lblActivity"), "Starting sync") << "lags until the next tick";
    Tick("tmr_Exit");
    EXPECT_EQ(Text("lblActivity"), "Idle");

    Find<QAction>("mnuExit").trigger();
    Fire("tmr_Exit");
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_EQ(TakeLog(), Lines{"StopSync found. Application will exit."});
    EXPECT_FALSE(window.isVisible());
}

TEST_F(FrmMainTest, StatusTellsTheHeartbeatInWordsAndCountsEveryFileForNobody) {
    Show();
    const auto shown = [&](int heartbeat) {
        SetNumber(settings::SyncHeartbeat, heartbeat);
        Tick("tmr_Sync");
        return Text("lblHeartbeat");
    };
    EXPECT_EQ(shown(1), "OK");
    EXPECT_EQ(shown(3), "OK") << "unknown: the old text stays";
    EXPECT_EQ(shown(2), "No response from main");
    EXPECT_EQ(shown(0), "Pending");
    SetNumber(settings::EnableHeartbeat, 0);
    EXPECT_EQ(shown(1), "N/A");

    agent.SyncFolder = Path("Sync");
    agent.MainUniqueID = MainID;
    agent.RoamingUniqueID = RoamingID;
    for (int file = 0; file < 12; ++file) {
        WriteText(Path("Sync/" + MainID + "~" + std::to_string(file) + ".txt"), "");
    }
    Tick("tmr_Sync");
    EXPECT_EQ(Text("lblFileCount"), "12/0/0");
}

TEST_F(FrmMainTest, ActivityOfAnyLengthLeavesTheWindowAlone) {
    Show();
    auto& tray = Find<TrayIcon>("TrayIcon1");
    EXPECT_EQ(tray.toolTip(), kTitle);
    const QSize size = window.size();
    const std::string path = "Copying " + std::string(600, 'x') + " <b>&";
    tray.SetText(path);
    Tick("tmr_Exit");
    EXPECT_EQ(Text("lblActivity"), path);
    QTest::qWait(0);
    EXPECT_EQ(window.size(), size);
    tray.SetText(kTitle);
    tray.setToolTip("QNDR 5.0 Roa");
    Tick("tmr_Exit");
    EXPECT_EQ(Text("lblActivity"), "Idle") << "what the desktop shows does not count";
}

TEST_F(FrmMainTest, CloseIsRefusedDuringAPassAndEndsTheAgentElse) {
    Show();
    RunPass([this] {
        EXPECT_FALSE(window.close());
        EXPECT_TRUE(window.isVisible());
    });
    TakeLog();
    Click("cmdSyncNow");
    QMetaObject::invokeMethod(
        &window,
        [this] {
            EXPECT_TRUE(window.close());
            Fire("tmr_Sync");
        },
        Qt::QueuedConnection);
    EXPECT_EQ(QCoreApplication::exec(), 0);
    messages.ProcessMessages();
    EXPECT_EQ(TakeLog(), Lines{}) << "no tick runs in a window that is gone";
    EXPECT_FALSE(Find<QTimer>("tmr_Sync").isActive() || Find<QTimer>("tmr_Exit").isActive());
}

TEST_F(FrmMainTest, TrayRestoresTheWindowAndHoldsTheMenu) {
    window.Load();
    EXPECT_FALSE(window.isVisible());
    auto& tray = Find<TrayIcon>("TrayIcon1");
    QMenu& menu = *tray.contextMenu();
    EXPECT_EQ(menu.objectName(), "mnuTray");
    EXPECT_EQ(menu.defaultAction(), &Find<QAction>("mnuShow"));
    emit tray.activated(QSystemTrayIcon::Context);
    EXPECT_FALSE(window.isVisible());
    // This platform has no tray: closing must leave something to click on.
    const auto restores = [&](const std::function<void()>& gesture) {
        gesture();
        EXPECT_TRUE(window.isVisible() && !window.isMinimized());
        Click("cmdClose");
        EXPECT_TRUE(window.isVisible() && window.isMinimized());
    };
    restores([&] { emit tray.activated(QSystemTrayIcon::Trigger); });
    restores([&] { emit tray.activated(QSystemTrayIcon::DoubleClick); });
    restores([&] { Find<QAction>("mnuShow").trigger(); });
    EXPECT_EQ(ReadNumber(settings::StopSync), 0);
}

TEST_F(FrmMainTest, FoldersAreOpenedOrSaidToBeMissing) {
    FileManager desktop;
    Show(2);
    Click("cmdLogFolder");
    EXPECT_EQ(desktop.opened, Lines{Path("CommonAppData/Velmoran/Logs/")});
    agent.SyncFolder = Path("Sync");
    window.RefreshStatus();
    window.findChild<QTabWidget*>("TabControl1")->setCurrentIndex(1);
    Click("cmdOpenSyncFolder");
    EXPECT_EQ(desktop.opened.back(), Path("Sync"));

    const auto takeDialog = [this] {
        auto* dialog = window.findChild<QMessageBox*>("tskDialog");
        const Lines texts{dialog->windowTitle().toStdString(), dialog->text().toStdString(),
                          dialog->informativeText().toStdString()};
        QTest::mouseClick(dialog->button(QMessageBox::Ok), Qt::LeftButton);
        QCoreApplication::sendPostedEvents(dialog, QEvent::DeferredDelete);
        EXPECT_EQ(window.findChild<QMessageBox*>("tskDialog"), nullptr);
        return texts;
    };
    const std::string program = "QNDR 5.0 - Roaming Workstation Sync Agent";
    agent.SyncFolder = Path("gone");
    Click("cmdOpenSyncFolder");
    EXPECT_EQ(takeDialog(), (Lines{program, "The sync folder does not exist.",
                                   "Check your File Locations in the Velmoran Ordergrove Suite."}));
    std::filesystem::remove_all(Path("CommonAppData"));
    WriteText(Path("CommonAppData"), "");
    window.findChild<QTabWidget*>("TabControl1")->setCurrentIndex(2);
    Click("cmdLogFolder");
    EXPECT_EQ(takeDialog(), (Lines{program, "The logs folder does not exist.",
                                   "This folder only gets created when a log file is created."}));
    EXPECT_EQ(desktop.opened.size(), 2U);
}

TEST_F(FrmMainTest, FailedStatementsLeaveTheOthersAlone) {
    Show(2);
    SetNumber(settings::KeepSyncFiles, 1);
    SetText(settings::RootKey, settings::EnableHeartbeat, "perhaps");
    SetNumber(settings::ManageDeleting, 0);
    Tick("tmr_Sync");
    EXPECT_TRUE(Find<QCheckBox>("chkKeep").isChecked());
    EXPECT_TRUE(Find<QCheckBox>("chkEnableHeartbeat").isChecked()) << "as it was";
    EXPECT_FALSE(Find<QCheckBox>("chkManageDeleted").isChecked());

    gate.Refuse(calls::RegistryTools::SetLong);
    QTest::keyClick(&Find<QSlider>("sldFrequency"), Qt::Key_Right);
    EXPECT_EQ(Text("lblFrequency"), "Every 6 minutes");
    Find<QAction>("mnuExit").trigger();
    Click("chkDebug");
    EXPECT_EQ(ReadNumber(settings::StopSync), 0);
}

} // namespace
} // namespace qndr::testing

#include "frm_main_test.moc"
