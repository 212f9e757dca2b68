// The element's properties; all but `plugin` take effect while playing.
#include <variant>

#include "gst/element.h"

namespace Ombe {
namespace {

GType colorOrderType() {
  static const GEnumValue values[] = {
      {static_cast<int>(ColorOrder::kRgb), "RRGGBB, as the engine shows them", "rgb"},
      {static_cast<int>(ColorOrder::kBgr), "BBGGRR, as many files mean them", "bgr"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("OmbeColorOrder", values);
  return type;
}

/// Where the value of a property is kept.
using Place = std::variant<std::string ReadingSettings::*, Ratio ReadingSettings::*,
                           ColorOrder ReadingSettings::*>;

/// That of each property; they are numbered from 1.
constexpr Place kPlaces[] = {&ReadingSettings::codePage, &ReadingSettings::videoRate,
                             &ReadingSettings::frameRate, &ReadingSettings::colorOrder,
                             &ReadingSettings::plugin};
constexpr guint kPlugin = std::size(kPlaces);  // the last

void take(const GValue* value, std::string& setting) {
  const char* text = g_value_get_string(value);
  setting = text == nullptr ? "" : text;
}

void take(const GValue* value, Ratio& setting) {
  setting = {static_cast<std::uint32_t>(gst_value_get_fraction_numerator(value)),
             static_cast<std::uint32_t>(gst_value_get_fraction_denominator(value))};
}

void take(const GValue* value, ColorOrder& setting) {
  setting = static_cast<ColorOrder>(g_value_get_enum(value));
}

void give(const std::string& setting, GValue* value) { g_value_set_string(value, setting.c_str()); }

void give(Ratio setting, GValue* value) {
  gst_value_set_fraction(value, static_cast<int>(setting.numerator),
                         static_cast<int>(setting.denominator));
}

void give(ColorOrder setting, GValue* value) { g_value_set_enum(value, static_cast<int>(setting)); }

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* /*spec*/) {
  ElementState& state = *elementOf(object)->state;
  {
    const std::lock_guard lock(state.mutex);
    const ReadingSettings before = state.settings;
    std::visit([&](auto place) { take(value, state.settings.*place); }, kPlaces[id - 1]);
    if (id == kPlugin || state.settings == before) return;  // overlays repeat what they set
  }
  settingsChanged(elementOf(object));
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* /*spec*/) {
  ElementState& state = *elementOf(object)->state;
  const std::lock_guard lock(state.mutex);
  std::visit([&](auto place) { give(state.settings.*place, value); }, kPlaces[id - 1]);
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
  GParamSpec* specs[] = {
      nullptr,  // number 0 is none
      g_param_spec_string("subtitle-encoding", "Subtitle encoding",
                          "Code page of texts without an encoding signature; empty for UTF-8", "",
                          kAnyTime),
      rate("video-fps", "Video frame rate", "Frame rate of the film, for files that state none"),
      rate("frame-rate", "Frame rate",
           "Frame rate that frame numbers are counted with, whatever the file states; 0/1 for its "
           "own"),
      g_param_spec_enum("color-order", "Color order", "How the six digits of a colour are meant",
                        colorOrderType(), static_cast<int>(ColorOrder::kRgb), kAnyTime),
      g_param_spec_string("plugin", "Plug-in",
                          "Path of the engine's plug-in; empty to search for it", "", kWhenReady)};
  static_assert(std::size(specs) == std::size(kPlaces) + 1);
  g_object_class_install_properties(object, std::size(specs), specs);
}

}  // namespace Ombe
