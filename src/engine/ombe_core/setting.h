// Names of settings.
#pragma once

#include <cstdint>

#include "ombe_core/export.h"
#include "ombe_core/kelm_string.h"

namespace Ombe {

/// The engine's media types; subtitle plug-ins use only the one of subtitles.
enum class MediaType : std::int32_t { kSubtitle = 4 };

/// Identifies one setting by media type, group and key. Copies its names; immutable, so it may be
/// read by any number of threads.
class OMBE_API Setting {
 public:
  Setting(MediaType mediaType, String group, String name);
  ~Setting();
  Setting(const Setting&) = default;
  Setting& operator=(const Setting&) = delete;

  [[nodiscard]] MediaType mediaType() const { return mediaType_; }
  [[nodiscard]] const String& group() const { return group_; }
  [[nodiscard]] const String& name() const { return name_; }

  friend bool operator==(const Setting& a, const Setting& b) {
    // Names differ more often than groups, mostly in their length already.
    return a.mediaType_ == b.mediaType_ && a.name_ == b.name_ && a.group_ == b.group_;
  }

 private:
  MediaType mediaType_;
  String group_;
  String name_;

  friend struct SettingLayout;
};

struct SettingLayout {
  static_assert(offsetof(Setting, mediaType_) == 0 && offsetof(Setting, group_) == sizeof(void*) &&
                offsetof(Setting, name_) == 4 * sizeof(void*) &&
                sizeof(Setting) == 7 * sizeof(void*));
};

}  // namespace Ombe
