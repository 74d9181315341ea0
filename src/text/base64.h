#pragma once

#include <string>
#include <string_view>

namespace qndr::text {

/// Appends the base64 form of `bytes` to `out`, without line breaks.
void AppendBase64(std::string& out, std::string_view bytes);

/// Decodes base64 text where it stands, beginning at `from`, and cuts `text` behind the bytes. Blanks and line
/// breaks are passed over. False when it is not base64; `text` is then of no use from `from` on.
bool DecodeBase64(std::string& text, std::size_t from);

} // namespace qndr::text
