#pragma once

#include "services/gated/forwarding.h"
#include "services/standing.h"

namespace qndr::services {

class StandingWrapper : public Forwarding<Standing> {
  public:
    using Forwarding::Forwarding;

    void Initialize(SharedCodeLibrary& library) override {
        Ask(calls::Standing::Initialize, Raises, [&](Standing& standing) { standing.Initialize(library); });
    }
    std::vector<std::string> Exchange(const StandingSettings& settings) override {
        return Ask(calls::Standing::Exchange, Raises,
                   [&](Standing& standing) { return standing.Exchange(settings); });
    }
    void PreTerminate() override {
        Ask(calls::Standing::PreTerminate, DoesNothing, [](Standing& standing) { standing.PreTerminate(); });
    }
};

} // namespace qndr::services
