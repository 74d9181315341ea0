#pragma once

#include "services/call_gate.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr::services {

/// Searches and grows arrays of texts. An array whose last element is empty takes the next text there.
class StringArrayTools {
  public:
    virtual ~StringArrayTools() = default;

    /// The index, negative when absent. Without `matchCase` ASCII letters compare without case; with `partial` an
    /// element that contains the value is a match.
    virtual std::int32_t FindString(const std::string& value, const std::vector<std::string>& array,
                                    bool matchCase, bool partial) = 0;

    /// With `unique` a text that is there already is not added again.
    virtual void AddString(const std::string& value, std::vector<std::string>& array, bool unique) = 0;
};

/// Forwards every call of a StringArrayTools that `gate` admits. A null gate admits all.
class StringArrayToolsWrapper : public StringArrayTools, private Gated {
  public:
    StringArrayToolsWrapper(StringArrayTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::int32_t FindString(const std::string& value, const std::vector<std::string>& array, bool matchCase,
                            bool partial) override {
        if (!Admits("StringArrayTools.FindString")) {
            return -1;
        }
        return target_->FindString(value, array, matchCase, partial);
    }
    void AddString(const std::string& value, std::vector<std::string>& array, bool unique) override {
        Demand("StringArrayTools.AddString");
        target_->AddString(value, array, unique);
    }

  protected:
    StringArrayTools& Target() const { return *target_; }

  private:
    StringArrayTools* target_;
};

/// Searches and grows arrays of numbers.
class ArrayTools {
  public:
    virtual ~ArrayTools() = default;

    /// The index, negative when absent.
    virtual std::int32_t FindLong(std::int32_t value, const std::vector<std::int32_t>& array) = 0;

    /// With `unique` a number that is there already is not added again.
    virtual void AddLong(std::int32_t value, std::vector<std::int32_t>& array, bool unique) = 0;
};

/// Forwards every call of a ArrayTools that `gate` admits. A null gate admits all.
class ArrayToolsWrapper : public ArrayTools, private Gated {
  public:
    ArrayToolsWrapper(ArrayTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::int32_t FindLong(std::int32_t value, const std::vector<std::int32_t>& array) override {
        if (!Admits("ArrayTools.FindLong")) {
            return -1;
        }
        return target_->FindLong(value, array);
    }
    void AddLong(std::int32_t value, std::vector<std::int32_t>& array, bool unique) override {
        Demand("ArrayTools.AddLong");
        target_->AddLong(value, array, unique);
    }

  protected:
    ArrayTools& Target() const { return *target_; }

  private:
    ArrayTools* target_;
};

} // namespace qndr::services
