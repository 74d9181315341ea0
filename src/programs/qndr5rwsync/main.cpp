#include "composition/computer_services.h"
#include "programs/agent_program/agent_program.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/ticks.h"
#include "window/frm_main.h"
#include "window/qt_messages.h"

#include <QApplication>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QSystemTrayIcon>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

constexpr int kFailed = 1;

qndr::AgentProgram WindowProgram() {
    return {.name = "qndr5rwsync",
            .switches = {{"show", false}},
            .usage =
                "Keeps the companies of the Companies folder in step with those on other computers, behind an\n"
                "icon in the tray. Runs until it is asked to stop: there, by qndr5ctl stop, by SIGTERM or by\n"
                "SIGINT.\n",
            .ownOptions = "  --show              shows the window at once\n"};
}

/// The toolkit tells of a display that it cannot use in several lines, and then ends the process as if it had
/// crashed.
void EndWithoutDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*message*/) {
    if (type == QtFatalMsg) {
        std::cerr
            << "qndr5rwsync: there is no display that can be used; qndr5rwsyncd is the agent without a window\n";
        std::_Exit(kFailed);
    }
}

/// `count` must outlive the application. The arguments are not the toolkit's to read.
std::unique_ptr<QApplication> MakeApplication(int& count, char** arguments) {
    const QtMessageHandler before = qInstallMessageHandler(EndWithoutDisplay);
    auto application = std::make_unique<QApplication>(count, arguments);
    qInstallMessageHandler(before);

    QApplication::setApplicationName(qndr::AgentName);
    QApplication::setDesktopFileName(qndr::AgentName);
    QApplication::setQuitOnLastWindowClosed(false);
    // The next session starts the agent by itself; restored as well, it would be started twice.
    const auto neverRestart = [](QSessionManager& session) {
        session.setRestartHint(QSessionManager::RestartNever);
    };
    QObject::connect(application.get(), &QGuiApplication::commitDataRequest, neverRestart);
    QObject::connect(application.get(), &QGuiApplication::saveStateRequest, neverRestart);
    return application;
}

int RunAgent(const qndr::AgentProgram& program, const qndr::Options& options, char** arguments) {
    const qndr::suite::Computer computer = qndr::suite::Computer::FromEnvironment();
    qndr::suite::SystemTicks ticks; // in front of the application, which starts threads
    qndr::suite::SystemClock clock;
    int ownName = 1;
    const std::unique_ptr<QApplication> application = MakeApplication(ownName, arguments);
    qndr::QtMessages messages;
    qndr::ComputerServices outside(computer, {clock, messages, messages}, qndr::AgentName,
                                   qndr::SwitchNames(program.switches));
    qndr::AgentContext context(outside.Services());
    if (const auto status = qndr::EndsAtStart(program, context, options)) {
        return *status;
    }

    qndr::frmMain window(context);
    outside.TellWaitsTo([&](const std::string& text) { window.ShowWait(text); });
    const QSocketNotifier endRequests(ticks.EndRequestHandle(), QSocketNotifier::Read);
    QObject::connect(&endRequests, &QSocketNotifier::activated, &window, [&] {
        if (ticks.TakeEndRequest()) {
            qndr::EndWhenIdle(program, context, [&] { window.Unload(); });
        }
    });
    window.Load();
    // Without a tray nobody could ever reach a hidden window.
    if (options.show || !QSystemTrayIcon::isSystemTrayAvailable()) {
        window.Restore();
    }
    QApplication::exec();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const qndr::AgentProgram program = WindowProgram();
    return qndr::RunAgentProgram(program, argc, argv,
                                 [&](const qndr::Options& options) { return RunAgent(program, options, argv); });
}
