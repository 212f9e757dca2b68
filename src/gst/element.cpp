#include "gst/element.h"

#include "gst/head.h"

GST_DEBUG_CATEGORY(ombe_debug);

namespace Ombe {
namespace {

gpointer parentClass = nullptr;  // set once, before there is an element

GstStaticPadTemplate sinkTemplate =
    GST_STATIC_PAD_TEMPLATE("sink", GST_PAD_SINK, GST_PAD_ALWAYS, GST_STATIC_CAPS(kMicroDVDCaps));
GstStaticPadTemplate srcTemplate = GST_STATIC_PAD_TEMPLATE(
    "src", GST_PAD_SRC, GST_PAD_ALWAYS, GST_STATIC_CAPS("text/x-raw, format=(string)pango-markup"));

gboolean srcEvent(GstPad* pad, GstObject* parent, GstEvent* event) {
  if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK) return seek(elementOf(parent), event);
  return gst_pad_event_default(pad, parent, event);
}

gboolean srcQuery(GstPad* pad, GstObject* parent, GstQuery* query) {
  ElementState& state = *elementOf(parent)->state;
  GstFormat format = GST_FORMAT_UNDEFINED;
  if (GST_QUERY_TYPE(query) == GST_QUERY_SEEKING) {
    gst_query_parse_seeking(query, &format, nullptr, nullptr, nullptr);
    gst_query_set_seeking(query, format, format == GST_FORMAT_TIME, 0, -1);
    return TRUE;
  }
  if (GST_QUERY_TYPE(query) != GST_QUERY_POSITION) {
    return gst_pad_query_default(pad, parent, query);
  }
  gst_query_parse_position(query, &format, nullptr);
  if (format != GST_FORMAT_TIME) return FALSE;
  const std::lock_guard lock(state.mutex);
  gst_query_set_position(query, format, static_cast<gint64>(state.playback.segment().position));
  return TRUE;
}

gboolean activateSrc(GstPad* /*pad*/, GstObject* parent, GstPadMode mode, gboolean active) {
  if (mode != GST_PAD_MODE_PUSH) return FALSE;
  return active ? TRUE : stop(elementOf(parent));
}

/// Whatever comes next starts from nothing. No thread of the element runs, but a property may be
/// set meanwhile.
void forget(ElementState& state) {
  const std::lock_guard restarting(state.restarting);
  const std::lock_guard lock(state.mutex);
  state.bytes = {};
  state.complete = false;
  state.sending = {};
  state.playback = {};
  state.seqnum = GST_SEQNUM_INVALID;
}

/// Without a plug-in the element gets no further than NULL, so that a player may take another.
bool load(OmbeSubParse* element) {
  ElementState& state = *element->state;
  try {
    state.library.emplace(pluginFor(state.settings));
    return true;
  } catch (const std::exception& failure) {
    GST_ELEMENT_ERROR(element, LIBRARY, INIT, ("MicroDVD subtitles: %s", failure.what()),
                      ("Set the property `plugin` or OMBE_PLUGIN_PATH."));
    return false;
  }
}

GstStateChangeReturn changeState(GstElement* parent, GstStateChange transition) {
  OmbeSubParse* element = elementOf(parent);
  if (transition == GST_STATE_CHANGE_NULL_TO_READY && !load(element)) {
    return GST_STATE_CHANGE_FAILURE;
  }
  const GstStateChangeReturn result =
      GST_ELEMENT_CLASS(parentClass)->change_state(parent, transition);
  if (transition == GST_STATE_CHANGE_PAUSED_TO_READY) forget(*element->state);
  if (transition == GST_STATE_CHANGE_READY_TO_NULL) element->state->library.reset();
  return result;
}

void finalize(GObject* object) {
  delete elementOf(object)->state;
  G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initClass(gpointer klass, gpointer /*data*/) {
  parentClass = g_type_class_peek_parent(klass);
  GST_DEBUG_CATEGORY_INIT(ombe_debug, "ombesubparse", 0, "MicroDVD subtitles");
  auto* object = G_OBJECT_CLASS(klass);
  auto* element = GST_ELEMENT_CLASS(klass);
  installProperties(object);
  object->finalize = finalize;
  element->change_state = changeState;
  gst_element_class_add_static_pad_template(element, &sinkTemplate);
  gst_element_class_add_static_pad_template(element, &srcTemplate);
  // Overlays look for the class by exactly these words.
  gst_element_class_set_static_metadata(
      element, "MicroDVD subtitles", "Codec/Parser/Subtitle",
      "Times and styles MicroDVD subtitles through the engine's plug-in",
      "The ombe contributors <ombe@example.org>");
}

void initElement(GTypeInstance* instance, gpointer /*class*/) {
  OmbeSubParse* element = elementOf(instance);
  element->state = new ElementState;
  element->sink = gst_pad_new_from_static_template(&sinkTemplate, "sink");
  gst_pad_set_chain_function(element->sink, takeBytes);
  gst_pad_set_event_function(element->sink, sinkEvent);
  gst_element_add_pad(GST_ELEMENT_CAST(element), element->sink);
  element->src = gst_pad_new_from_static_template(&srcTemplate, "src");
  gst_pad_set_event_function(element->src, srcEvent);
  gst_pad_set_query_function(element->src, srcQuery);
  gst_pad_set_activatemode_function(element->src, activateSrc);
  gst_pad_use_fixed_caps(element->src);
  gst_element_add_pad(GST_ELEMENT_CAST(element), element->src);
}

}  // namespace

GType elementType() {
  static const GType type = g_type_register_static_simple(
      GST_TYPE_ELEMENT, "OmbeSubParse", sizeof(GstElementClass), initClass, sizeof(OmbeSubParse),
      initElement, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace Ombe
