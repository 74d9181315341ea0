#pragma once

#include "agent/scheduler.h"
#include "window/controls.h"
#include "window/tray_icon.h"

#include <QMenu>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace qndr {

/// The window of the agent. It holds the scheduler, and the agent lives as long as the window is loaded, hidden or
/// not. Settings are read afresh at each refresh and written by changes of the controls alone. No handler shows
/// or raises an error.
class frmMain final : public QWidget, public AgentView {
  public:
    /// The context must outlive the window. To be made behind the application.
    explicit frmMain(AgentContext& context);

    /// Loads the schedule, starts the ticks and puts the icon into the tray. Does not show the window.
    void Load();
    /// Shows the window in front of the others, from the tray or the task bar.
    void Restore();
    /// What the pass waits for, shown in the place of its activity; see AgentScheduler::ShowWait.
    void ShowWait(const std::string& text) { scheduler_.ShowWait(text); }

    void FillLabels() override;
    void ShowFrequency(std::int32_t minutes) override;
    void ShowActivity(const std::string& text) override;
    void RefreshStatus() override;
    void StopTimers() override;
    /// Ends the application's event loop. No tick runs afterwards.
    void Unload() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void BuildTimer(QTimer& timer, const char* name, int interval, const std::function<void()>& tick);
    void BuildTray();
    void ConnectControls();
    void WriteOnChange(QCheckBox* box, const char* setting);

    void RefreshFrequencyLabel();
    void RefreshSyncFolder();
    void RefreshCheckBoxes();
    void RefreshHeartbeat();
    void RefreshDate(QLabel* label, const char* setting);
    void RefreshFileCount();
    void SetNumber(const char* setting, std::int32_t value);

    void HideToTray();
    void ChangeFrequency();
    void ChangeDebug(bool ticked);
    void OpenLogsFolder();
    void OpenSyncFolder();
    /// Opens the folder with the desktop's own program, or tells that it does not exist.
    void OpenFolder(const std::string& folder, const char* missing, const char* hint);

    AgentContext& context_;
    Controls controls_;
    TrayIcon tray_;
    QMenu mnuTray_{"Tray", this};
    QTimer tmrSync_{this};
    QTimer tmrExit_{this};
    AgentScheduler scheduler_;
    bool isUnloaded_ = false;
};

} // namespace qndr
