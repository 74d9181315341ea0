#pragma once

#include <QIcon>

namespace qndr {

/// The agent's icon, for the window and the tray.
QIcon AgentIcon();

} // namespace qndr
