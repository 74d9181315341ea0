#pragma once

#include "services/gated/forwarding.h"
#include "services/text_file_tools.h"

namespace qndr::services {

class TextFileToolsWrapper : public Forwarding<TextFileTools> {
  public:
    using Forwarding::Forwarding;

    std::int32_t WriteTextFile(const std::string& path, const std::string& text, const std::string& charset,
                               std::int32_t flag) override {
        return Ask(calls::TextFileTools::WriteTextFile, 0,
                   [&](TextFileTools& tools) { return tools.WriteTextFile(path, text, charset, flag); });
    }
};

} // namespace qndr::services
