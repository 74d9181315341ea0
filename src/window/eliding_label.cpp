#include "window/eliding_label.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace qndr {
namespace {

/// The least width, in digits.
constexpr int kWidth = 34;

} // namespace

ElidingLabel::ElidingLabel(Qt::TextElideMode mode, QWidget* parent) : QLabel(parent), mode_(mode) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ElidingLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance('0') * kWidth, fontMetrics().height()};
}

bool ElidingLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        // Marked as rich text, so that no part of a path is taken for a tag.
        setToolTip(ElidedText() == text() ? QString() : "<span>" + text().toHtmlEscaped() + "</span>");
    }
    return QLabel::event(event);
}

void ElidingLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(),
                          static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
                          isEnabled(), ElidedText(), foregroundRole());
}

QString ElidingLabel::ElidedText() const {
    return fontMetrics().elidedText(text(), mode_, contentsRect().width());
}

} // namespace qndr
