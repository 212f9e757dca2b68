// The element `ombesubparse` in a harness, in a pipeline, and once in one that draws. GStreamer's
// own tracer tells at the end which of its objects were left.
#include <gst/base/gsttypefindhelper.h>
#include <gst/check/gstharness.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <random>
#include <sstream>
#include <thread>

#include "support/fakes.h"
#include "support/paths.h"
#include "support/table.h"

#ifdef __SANITIZE_THREAD__
/// The thread sanitizer knows nothing of the locks of GLib, which stand on futexes. What libraries
/// do that it did not compile is left out.
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() { return "ignore_noninstrumented_modules=1"; }
#endif

namespace {

/// Whatever GLib and GStreamer complain of fails the test. The tracer's complaint says how to see
/// the objects that were left.
void complain(const char* /*domain*/, GLogLevelFlags level, const char* text, gpointer /*data*/) {
  if ((level & (G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) != 0) ADD_FAILURE() << text;
}

class Environment : public testing::Environment {
  void SetUp() override {
    g_setenv("GST_REGISTRY", ombe_test::kElementRegistry, TRUE);
    g_setenv("GST_TRACERS", "leaks", TRUE);
    g_setenv("OMBE_PLUGIN_PATH", "", TRUE);
    g_log_set_default_handler(complain, nullptr);
    gst_init(nullptr, nullptr);
    gst_object_unref(gst_plugin_load_file(ombe_test::kElementPlugin, nullptr));
  }
  void TearDown() override { gst_deinit(); }
};
const auto* const environment = testing::AddGlobalTestEnvironment(new Environment);

std::string textIn(GstBuffer* buffer) {
  std::string text(gst_buffer_get_size(buffer), '\0');
  gst_buffer_extract(buffer, 0, text.data(), text.size());
  std::replace(text.begin(), text.end(), '\n', '|');
  return text;
}

/// An element, and what comes out of it.
class Player {
 public:
  explicit Player(const std::string& properties) : harness_(gst_harness_new("ombesubparse")) {
    gst_harness_set_src_caps_str(harness_, "application/x-subtitle-microdvd");
    gst_element_set_bus(harness_->element, bus_);
    gst_pad_add_probe(
        harness_->sinkpad,
        static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_BOTH |
                                     GST_PAD_PROBE_TYPE_EVENT_FLUSH),
        note, this, nullptr);
    set(properties);
  }
  ~Player() {
    gst_element_set_bus(harness_->element, nullptr);
    gst_harness_teardown(harness_);
    gst_object_unref(bus_);
  }

  void give(const std::string& content) {
    // In pieces, as a file comes.
    for (std::size_t at = 0; at < content.size(); at += 10) {
      const std::string piece = content.substr(at, 10);
      gst_harness_push(harness_, gst_buffer_new_memdup(piece.data(), piece.size()));
    }
    gst_harness_push_event(harness_, gst_event_new_eos());
  }

  /// Behind a flush, or as another stream.
  void giveAgain(const std::string& content, bool isFlushed) {
    if (isFlushed) gst_harness_push_event(harness_, gst_event_new_flush_start());
    gst_harness_push_event(harness_, isFlushed ? gst_event_new_flush_stop(TRUE)
                                               : gst_event_new_stream_start("another"));
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_BYTES);
    gst_harness_push_event(harness_, gst_event_new_segment(&segment));
    give(content);
  }

  /// "NAME=VALUE", or nothing.
  void set(const std::string& property) {
    const std::size_t equals = property.find('=');
    if (equals == std::string::npos) return;
    gst_util_set_object_arg(G_OBJECT(harness_->element), property.substr(0, equals).c_str(),
                            property.substr(equals + 1).c_str());
  }

  bool seek(double rate, const std::string& flags, int start, int stop) {
    auto seekFlags = static_cast<int>(GST_SEEK_FLAG_ACCURATE);
    if (flags.find('f') != std::string::npos) seekFlags |= GST_SEEK_FLAG_FLUSH;
    if (flags.find('s') != std::string::npos) seekFlags |= GST_SEEK_FLAG_SEGMENT;
    return gst_harness_push_upstream_event(
        harness_,
        gst_event_new_seek(rate, GST_FORMAT_TIME, static_cast<GstSeekFlags>(seekFlags),
                           GST_SEEK_TYPE_SET, start * gint64{GST_MSECOND}, GST_SEEK_TYPE_SET,
                           stop < 0 ? -1 : stop * gint64{GST_MSECOND}));
  }
  bool seek(const std::string& words) {
    std::istringstream in(words);
    double rate = 0;
    std::string flags;
    int start = 0, stop = 0;
    in >> rate >> flags >> start >> stop;
    return seek(rate, flags, start, stop);
  }

  [[nodiscard]] int flushes() {
    const std::lock_guard lock(mutex_);
    return flushes_;
  }

  /// What came since the last flush, once it has ended, and what was warned of.
  std::string played() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, std::chrono::seconds(20), [this] { return ended_; })) {
      return "goes on: " + got_;
    }
    std::string result = std::exchange(got_, {});
    ended_ = false;
    while (GstMessage* message = gst_bus_pop_filtered(bus_, GST_MESSAGE_WARNING)) {
      GError* error = nullptr;
      gst_message_parse_warning(message, &error, nullptr);
      const std::string text = error->message;
      result += " !" + text.substr(text.find(": ") + 2);
      g_error_free(error);
      gst_message_unref(message);
    }
    return result;
  }

 private:
  static GstPadProbeReturn note(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer player) {
    static_cast<Player*>(player)->note(info);
    return GST_PAD_PROBE_OK;
  }

  void note(GstPadProbeInfo* info) {
    const std::lock_guard lock(mutex_);
    if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
      GstBuffer* buffer = GST_PAD_PROBE_INFO_BUFFER(info);
      add(GST_BUFFER_PTS(buffer), GST_BUFFER_DURATION(buffer), textIn(buffer));
      return;
    }
    GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
    GstClockTime start = 0, duration = 0;
    switch (static_cast<int>(GST_EVENT_TYPE(event))) {
      case GST_EVENT_FLUSH_STOP:
        ++flushes_;
        got_.clear();
        ended_ = false;
        break;
      case GST_EVENT_SEGMENT:
        gst_event_copy_segment(event, &segment_);
        if (segment_.applied_rate < 0)
          got_ += "from " + std::to_string(segment_.time / GST_MSECOND) + ": ";
        break;
      case GST_EVENT_GAP:
        gst_event_parse_gap(event, &start, &duration);
        add(start, duration, "-");
        break;
      case GST_EVENT_EOS:
        end("eos");
        break;
      case GST_EVENT_SEGMENT_DONE:
        end("done");
        break;
    }
  }

  void add(GstClockTime start, GstClockTime duration, const std::string& text) {
    const auto shown = [this](GstClockTime time) {
      const guint64 running = gst_segment_to_running_time(&segment_, GST_FORMAT_TIME, time);
      return std::to_string(running / GST_MSECOND);
    };
    const bool isOpen = !GST_CLOCK_TIME_IS_VALID(duration);
    got_ += shown(start) + "-" + (isOpen ? "" : shown(start + duration)) + " " + text + ", ";
  }
  void end(const char* how) {
    got_ += how;
    ended_ = true;
    changed_.notify_all();
  }

  GstHarness* harness_;
  GstBus* bus_ = gst_bus_new();
  std::mutex mutex_;
  std::condition_variable changed_;
  GstSegment segment_{};
  std::string got_;
  bool ended_ = false;
  int flushes_ = 0;
};

std::string typeOf(const std::string& content) {
  GstCaps* caps = gst_type_find_helper_for_data(
      nullptr, reinterpret_cast<const guint8*>(content.data()), content.size(), nullptr);
  if (caps == nullptr) return "";
  std::string name = gst_structure_get_name(gst_caps_get_structure(caps, 0));
  gst_caps_unref(caps);
  return name;
}

TEST(GStreamer, ShowsTheRightTextsAtTheRightTimes) {
  std::unique_ptr<Player> player;
  for (const auto& row : ombe_test::readTable("gst.txt")) {
    SCOPED_TRACE(testing::PrintToString(row));
    if (row[0] == "type") {
      EXPECT_EQ(typeOf(row[1]), row[2]);
      continue;
    }
    std::string got;
    const int flushes = player ? player->flushes() : 0;
    if (row[0] == "file") {
      player = std::make_unique<Player>(row[2]);
      player->give(row[1]);
    } else if (row[0] == "again" || row[0] == "flush") {
      player->giveAgain(row[1], row[0] == "flush");
    } else if (row[0] == "set") {
      player->set(row[1]);
    } else if (!player->seek(row[1])) {
      got = player->flushes() == flushes ? "no" : "no, but flushed";
    }
    if (got.empty()) got = player->played();
    EXPECT_EQ(got, row.back());
  }
}

TEST(GStreamer, AnswersFiveHundredSeeksWhileSettingsChange) {
  std::string content = "{1}{1}25\n";
  for (int i = 1; i <= 400; ++i) {
    content += "{" + std::to_string(i * 25) + "}{" + std::to_string(i * 25 + 30) + "}x\n";
  }
  Player player("");
  player.give(content);
  std::thread seeker([&player] {
    std::mt19937 random(1);
    for (int i = 0; i < 500; ++i) {
      const int start = static_cast<int>(random() % 400'000);
      const bool isFlushing = random() % 8 != 0;
      // Refused while a setting's flush is under way.
      static_cast<void>(
          player.seek(random() % 3 == 0 ? -1 : 1, isFlushing ? "f" : "a", start, 400'000));
    }
  });
  for (int i = 0; i < 40; ++i) {
    player.set("frame-rate=" + std::to_string(20 + i % 3) + "/1");
    player.set(i % 2 == 0 ? "color-order=bgr" : "color-order=rgb");
  }
  player.set("frame-rate=0/1");
  seeker.join();
  ASSERT_TRUE(player.seek("1 f 400200 401000"));
  EXPECT_EQ(player.played(), "0-800 x, eos");
}

/// A pipeline with a sink named "out".
class Pipeline {
 public:
  explicit Pipeline(const std::string& description)
      : pipeline_(gst_parse_launch(description.c_str(), nullptr)) {}
  ~Pipeline() {
    set(GST_STATE_NULL);
    gst_object_unref(pipeline_);
  }

  /// Returns when the state is reached.
  void set(GstState state) {
    gst_element_set_state(pipeline_, state);
    EXPECT_EQ(gst_element_get_state(pipeline_, nullptr, nullptr, 20 * GST_SECOND),
              GST_STATE_CHANGE_SUCCESS);
  }
  void set(const char* element, const char* property, const char* value) {
    GstElement* found = gst_bin_get_by_name(GST_BIN(pipeline_), element);
    gst_util_set_object_arg(G_OBJECT(found), property, value);
    gst_object_unref(found);
  }
  void seek(GstClockTime position) {
    const auto flags = static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE);
    EXPECT_TRUE(
        gst_element_seek_simple(pipeline_, GST_FORMAT_TIME, flags, static_cast<gint64>(position)));
  }

  /// Plays to the end and joins what `show` makes of each buffer.
  template <typename Show>
  std::string played(const Show& show) {
    gst_element_set_state(pipeline_, GST_STATE_PLAYING);
    GstElement* sink = gst_bin_get_by_name(GST_BIN(pipeline_), "out");
    std::string result;
    GstSample* sample = nullptr;
    while (g_signal_emit_by_name(sink, "try-pull-sample", 20 * GST_SECOND, &sample),
           sample != nullptr) {
      result += show(gst_sample_get_buffer(sample));
      gst_sample_unref(sample);
    }
    gst_object_unref(sink);
    return result;
  }

 private:
  GstElement* pipeline_;
};

TEST(GStreamer, BeginsAnewWheneverItIsStarted) {
  const ombe_test::TempFile file("{1}{1}25\n{25}{75}A\n{100}{150}B\n", "sub");
  Pipeline pipeline("filesrc location=" + file.path() +
                    " ! ombesubparse name=parser ! appsink name=out sync=false");
  for (const char* rate : {"25/1", "0/1", "25/1"}) {
    pipeline.set(GST_STATE_PAUSED);
    pipeline.seek(4 * GST_SECOND);
    pipeline.set(GST_STATE_PAUSED);
    pipeline.set("parser", "frame-rate", rate);  // goes on from the position
    pipeline.set(GST_STATE_READY);
    EXPECT_EQ(pipeline.played(textIn), "AB");
    pipeline.set(GST_STATE_READY);
  }
}

/// '#' for a frame with anything but black in it.
std::string drawnFrames(const std::string& file) {
  Pipeline pipeline(
      "videotestsrc pattern=black num-buffers=100 ! video/x-raw,format=GRAY8,width=160,height=90,"
      "framerate=25/1 ! textoverlay name=text ! appsink name=out sync=false filesrc location=" +
      file + " ! ombesubparse ! text.text_sink");
  return pipeline.played([](GstBuffer* buffer) {
    const std::string pixels = textIn(buffer);
    const auto isBright = [](char pixel) { return static_cast<unsigned char>(pixel) > 125; };
    return std::any_of(pixels.begin(), pixels.end(), isBright) ? '#' : '.';
  });
}

TEST(GStreamer, DrawsOnTheFramesThatTheFileNames) {
  const ombe_test::TempFile file("{1}{1}25\n{5}{8}W\n{25}{75}W\n{90}{95}W\n{95}{97}W\n", "sub");
  std::string expected(100, '.');
  for (const auto& [first, last] : {std::pair{5, 8}, {25, 75}, {90, 97}}) {
    std::fill(expected.begin() + first, expected.begin() + last, '#');
  }
  EXPECT_EQ(drawnFrames(file.path()), expected);
}

TEST(GStreamer, SaysWhichPluginIsMissing) {
  GstElement* element = gst_element_factory_make("ombesubparse", nullptr);
  GstBus* bus = gst_bus_new();
  gst_element_set_bus(element, bus);
  g_object_set(element, "plugin", "/nowhere/other.so", nullptr);
  EXPECT_EQ(gst_element_set_state(element, GST_STATE_READY), GST_STATE_CHANGE_FAILURE);
  GstMessage* message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR);
  ASSERT_NE(message, nullptr);
  GError* error = nullptr;
  gst_message_parse_error(message, &error, nullptr);
  EXPECT_NE(std::string(error->message).find("/nowhere/other.so"), std::string::npos);
  g_error_free(error);
  gst_message_unref(message);
  gst_element_set_state(element, GST_STATE_NULL);
  gst_object_unref(element);
  gst_object_unref(bus);
}

}  // namespace
