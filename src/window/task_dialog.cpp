#include "window/task_dialog.h"

namespace qndr {

frmTaskDialog::frmTaskDialog(QWidget* owner, const QString& mainText, const QString& contentText)
    : QMessageBox(Information, "QNDR 5.0 - Roaming Workstation Sync Agent", mainText, Ok, owner) {
    setObjectName("tskDialog");
    setInformativeText(contentText);
    setAttribute(Qt::WA_DeleteOnClose);
}

} // namespace qndr
