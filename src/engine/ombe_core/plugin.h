// The reference-counted base of every component.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ombe_core/export.h"
#include "ombe_core/kelm_string.h"
#include "ombe_core/status.h"

namespace Ombe {

class PluginContext;
class Plugin;

/// What the engine layer says of itself to those who hold a component.
struct PluginInfo {
  std::uint32_t size;           ///< bytes of this record
  std::uint32_t engineVersion;  ///< version of the engine layer that the base was built with
};

static_assert(sizeof(PluginInfo) == 8 && offsetof(PluginInfo, engineVersion) == 4);

/// A component: one object that offers interfaces by identifier. A new object counts 1; the release
/// that brings the count to zero destroys it. Counting is safe on any thread.
class OMBE_API Plugin {
 public:
  explicit Plugin(PluginContext* context);
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;
  virtual ~Plugin();  // slots 0 and 1

  virtual std::int32_t retain();           // slot 2; the new count
  virtual std::int32_t release();          // slot 3; the new count, 0 when the object is gone
  virtual std::int32_t holdCount() const;  // slot 4
  virtual const PluginInfo* getPluginInfo() const;  // slot 5; the engine layer's, never null
  virtual PluginContext* getPluginContext() const;  // slot 6; as given at construction

  /// Slot 7. Sets `*out` to the interface of that identifier and returns 0, or to null and returns
  /// kUnknownInterface. The interface is part of the object: it is not retained and not to be
  /// deleted.
  virtual Status getInterface(const String& identifier, void** out) = 0;

 private:
  PluginContext* context_;
  std::atomic<std::int32_t> count_{1};

  friend struct PluginLayout;
};

/// Name and type of the one symbol that a plug-in exports. The component in `*out` belongs to the
/// caller, who ends it with `release`. Returns 0; leaves by std::bad_alloc, or by what its mutex
/// library throws, when it cannot be made.
inline constexpr char kEntryPointName[] = "__getPlugin";
using EntryPoint = Status (*)(PluginContext* context, Plugin** out);

}  // namespace Ombe
