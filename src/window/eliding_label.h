#pragma once

#include <QLabel>

namespace qndr {

/// Shows one line of plain text in the width that it is given and never asks for more: what does not fit is left
/// out in the picture and told by the tool tip. text() stays whole.
class ElidingLabel final : public QLabel {
  public:
    explicit ElidingLabel(Qt::TextElideMode mode, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString ElidedText() const;

    Qt::TextElideMode mode_;
};

} // namespace qndr
