#pragma once

#include "shared/activity.h"

#include <QSystemTrayIcon>

#include <string>

namespace qndr {

/// TrayIcon1: the activity target of the passes. Its text is the tip of the icon and is kept here, because a
/// desktop may cut what it shows, and the agent compares the text.
class TrayIcon final : public QSystemTrayIcon, public ActivityTarget {
  public:
    explicit TrayIcon(QObject* owner);

    std::string Text() const override { return text_; }
    void SetText(const std::string& text) override;

  private:
    std::string text_;
};

} // namespace qndr
