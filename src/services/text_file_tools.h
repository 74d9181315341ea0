#pragma once

#include "services/call_gate.h"

#include <cstdint>
#include <string>

namespace qndr::services {

/// Writes text files.
class TextFileTools {
  public:
    virtual ~TextFileTools() = default;

    /// 1 on success. "utf-8" is the one charset that every implementation knows; no byte-order mark is written. A
    /// flag of 0 replaces an existing file.
    virtual std::int32_t WriteTextFile(const std::string& path, const std::string& text,
                                       const std::string& charset, std::int32_t flag) = 0;
};

/// Forwards every call of a TextFileTools that `gate` admits. A null gate admits all.
class TextFileToolsWrapper : public TextFileTools, private Gated {
  public:
    TextFileToolsWrapper(TextFileTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::int32_t WriteTextFile(const std::string& path, const std::string& text, const std::string& charset,
                               std::int32_t flag) override {
        if (!Admits("TextFileTools.WriteTextFile")) {
            return 0;
        }
        return target_->WriteTextFile(path, text, charset, flag);
    }

  protected:
    TextFileTools& Target() const { return *target_; }

  private:
    TextFileTools* target_;
};

} // namespace qndr::services
