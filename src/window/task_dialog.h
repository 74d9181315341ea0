#pragma once

#include <QMessageBox>

namespace qndr {

/// The one kind of message that the window shows: a main text, a content text and a button to acknowledge it.
/// open() shows it over its owner, with the agent running on behind it; it deletes itself when it is closed.
class frmTaskDialog final : public QMessageBox {
  public:
    frmTaskDialog(QWidget* owner, const QString& mainText, const QString& contentText);
};

} // namespace qndr
