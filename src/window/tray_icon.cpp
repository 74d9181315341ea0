#include "window/tray_icon.h"

#include "window/icons.h"

namespace qndr {

TrayIcon::TrayIcon(QObject* owner) : QSystemTrayIcon(AgentIcon(), owner) {
    setObjectName("TrayIcon1");
    SetText("QNDR 5 Roaming Workstation Sync");
}

void TrayIcon::SetText(const std::string& text) {
    text_ = text;
    setToolTip(QString::fromStdString(text));
}

} // namespace qndr
