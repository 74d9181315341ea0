#include "window/icons.h"

#include <QString>

/// A linker takes the pictures of a static library along only when they are asked for, outside every namespace.
static void TakeIconsAlong() {
    Q_INIT_RESOURCE(icons);
}

namespace qndr {

QIcon AgentIcon() {
    TakeIconsAlong();
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        icon.addFile(QString(":/qndr5rwsync/%1.png").arg(size), QSize(size, size));
    }
    return icon;
}

} // namespace qndr
