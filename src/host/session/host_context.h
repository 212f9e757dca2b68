// What plug-ins may ask the host at birth.
#pragma once

#include "ombe_core/plugin_context.h"

namespace Ombe {

/// This host shows UTF-8 text and nothing else. Has no state; any thread.
class HostContext final : public PluginContext {
 public:
  bool supportsFormat(String formatName) override { return view(formatName) == "UTF8"; }
};

}  // namespace Ombe
