// Plays a pipeline, and sets the frame rate of its MicroDVD subtitles to what is typed meanwhile:
//   live_rate 'playbin uri=file:///path/film.mkv suburi=file:///path/film.sub'
//   24000/1001
#include <gst/gst.h>

#include <iostream>
#include <string>

static void setRate(const GValue* element, gpointer rate) {
  gst_util_set_object_arg(G_OBJECT(g_value_get_object(element)), "frame-rate",
                          static_cast<const char*>(rate));
}

int main(int argc, char** argv) {
  gst_init(&argc, &argv);
  GstElement* player = argc == 2 ? gst_parse_launch(argv[1], nullptr) : nullptr;
  if (player == nullptr) return 1;
  gst_element_set_state(player, GST_STATE_PLAYING);
  for (std::string rate; std::getline(std::cin, rate);) {
    GstIterator* parsers =
        gst_bin_iterate_all_by_element_factory_name(GST_BIN(player), "ombesubparse");
    gst_iterator_foreach(parsers, setRate, rate.data());
    gst_iterator_free(parsers);
  }
  GstBus* bus = gst_element_get_bus(player);
  const auto ends = static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
  GstMessage* end = gst_bus_timed_pop_filtered(bus, GST_CLOCK_TIME_NONE, ends);
  gst_element_set_state(player, GST_STATE_NULL);
  const bool isWell = GST_MESSAGE_TYPE(end) == GST_MESSAGE_EOS;
  gst_message_unref(end);
  gst_object_unref(bus);
  gst_object_unref(player);
  return isWell ? 0 : 1;
}
