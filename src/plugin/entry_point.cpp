// The one symbol that the module exports.
#include "microdvd/microdvd_container.h"

extern "C" OMBE_API Ombe::Status __getPlugin(  // NOLINT(bugprone-reserved-identifier)
    Ombe::PluginContext* context, Ombe::Plugin** out) {
  *out = new Ombe::MicroDVDContainer(context);
  return Ombe::kSuccess;
}
