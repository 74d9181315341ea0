#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qndr::suite {

/// Appends text with the characters that mean something to XML, and carriage returns, as references. Fit for
/// element content and attributes.
void AppendXmlText(std::string& out, std::string_view text);

/// Whether the text is UTF-8 of characters that XML knows; control characters are not looked at.
bool IsXmlUtf8(std::string_view text);

/// The element of one column of an exchange file, and the forms in which a value stands in it.
class XmlColumn {
  public:
    /// Called between the pieces of a long value, to take out what was appended so far: otherwise such a value
    /// would be in memory several times.
    using Spill = std::function<void()>;

    explicit XmlColumn(std::string_view name);

    void AppendNull(std::string& out) const { out += null_; }
    void AppendInteger(std::string& out, std::int64_t number) const;
    /// The shortest text that reads back as the same double.
    void AppendReal(std::string& out, double number) const;
    /// Text that XML cannot carry (control characters, bytes that are no UTF-8) goes as base64.
    void AppendText(std::string& out, std::string_view text, const Spill& spill = {}) const;
    void AppendBytes(std::string& out, std::string_view bytes, const Spill& spill = {}) const;

  private:
    std::string open_;
    std::string openEncoded_;
    std::string null_;
    std::string close_;
};

} // namespace qndr::suite
