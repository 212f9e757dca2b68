// The element's properties; all but `plugin` take effect while playing.
#include "gst/element.h"

namespace Ombe {
namespace {

enum Property { kNone, kSubtitleEncoding, kVideoFps, kFrameRate, kColorOrder, kPlugin };

GType colorOrderType() {
  static const GEnumValue values[] = {
      {static_cast<int>(ColorOrder::kRgb), "RRGGBB, as the engine shows them", "rgb"},
      {static_cast<int>(ColorOrder::kBgr), "BBGGRR, as many files mean them", "bgr"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("OmbeColorOrder", values);
  return type;
}

Ratio ratioIn(const GValue* value) {
  return {static_cast<std::uint32_t>(gst_value_get_fraction_numerator(value)),
          static_cast<std::uint32_t>(gst_value_get_fraction_denominator(value))};
}

void giveRatio(Ratio ratio, GValue* value) {
  gst_value_set_fraction(value, static_cast<int>(ratio.numerator),
                         static_cast<int>(ratio.denominator));
}

std::string textIn(const GValue* value) {
  const char* text = g_value_get_string(value);
  return text == nullptr ? "" : text;
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* /*spec*/) {
  ElementState& state = *elementOf(object)->state;
  {
    const std::lock_guard lock(state.mutex);
    const ReadingSettings before = state.settings;
    switch (static_cast<Property>(id)) {
      case kNone:
        return;
      case kSubtitleEncoding:
        state.settings.codePage = textIn(value);
        break;
      case kVideoFps:
        state.settings.videoRate = ratioIn(value);
        break;
      case kFrameRate:
        state.settings.frameRate = ratioIn(value);
        break;
      case kColorOrder:
        state.settings.colorOrder = static_cast<ColorOrder>(g_value_get_enum(value));
        break;
      case kPlugin:
        state.settings.plugin = textIn(value);
        return;
    }
    if (state.settings == before) return;  // overlays repeat what they set
  }
  settingsChanged(elementOf(object));
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* /*spec*/) {
  ElementState& state = *elementOf(object)->state;
  const std::lock_guard lock(state.mutex);
  switch (static_cast<Property>(id)) {
    case kNone:
      return;
    case kSubtitleEncoding:
      g_value_set_string(value, state.settings.codePage.c_str());
      return;
    case kVideoFps:
      giveRatio(state.settings.videoRate, value);
      return;
    case kFrameRate:
      giveRatio(state.settings.frameRate, value);
      return;
    case kColorOrder:
      g_value_set_enum(value, static_cast<int>(state.settings.colorOrder));
      return;
    case kPlugin:
      g_value_set_string(value, state.settings.plugin.c_str());
      return;
  }
}

}  // namespace

/// Overlays set `subtitle-encoding` and `video-fps` under exactly these names.
void installProperties(GObjectClass* object) {
  constexpr auto kWhenReady = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                                       GST_PARAM_MUTABLE_READY);
  constexpr auto kAnyTime = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                                     GST_PARAM_MUTABLE_PLAYING);
  const auto rate = [](const char* name, const char* nick, const char* blurb) {
    return gst_param_spec_fraction(name, nick, blurb, 0, 1, G_MAXINT, 1, 0, 1, kAnyTime);
  };
  object->set_property = setProperty;
  object->get_property = getProperty;
  g_object_class_install_property(
      object, kSubtitleEncoding,
      g_param_spec_string("subtitle-encoding", "Subtitle encoding",
                          "Code page of texts without an encoding signature; empty for UTF-8", "",
                          kAnyTime));
  g_object_class_install_property(
      object, kVideoFps,
      rate("video-fps", "Video frame rate", "Frame rate of the film, for files that state none"));
  g_object_class_install_property(
      object, kFrameRate,
      rate("frame-rate", "Frame rate",
           "Frame rate that frame numbers are counted with, whatever the file states; 0/1 for its "
           "own"));
  g_object_class_install_property(
      object, kColorOrder,
      g_param_spec_enum("color-order", "Color order", "How the six digits of a colour are meant",
                        colorOrderType(), static_cast<int>(ColorOrder::kRgb), kAnyTime));
  g_object_class_install_property(
      object, kPlugin,
      g_param_spec_string("plugin", "Plug-in",
                          "Path of the engine's plug-in; empty to search for it", "", kWhenReady));
}

}  // namespace Ombe
