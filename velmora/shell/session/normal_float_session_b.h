/// A session that computes in memory: "Ram Only".
#pragma once

#include "velmora/shell/session/normal_float_session.h"

namespace velmora {

class NormalFloatSessionB final : public NormalFloatSession {
 public:
    NormalFloatSessionB(const lumo::DetectedHardware& hardware, std::unique_ptr<Constant> chosen);

    void run() override;
    bool can_run(bool print) const override;
    void refresh() override;
    const char* mode_token() const override { return "ram"; }
    const char* mode_name() const override { return "Ram Only"; }
};

}  // namespace velmora
