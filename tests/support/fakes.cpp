#include "support/fakes.h"

#include <dlfcn.h>

#include <algorithm>
#include <fstream>

#include "ombe_core/buffer_allocator.h"
#include "ombe_core/logger.h"
#include "ombe_core/media_source.h"
#include "support/allocation_faults.h"

namespace ombe_test {

using namespace Ombe;  // NOLINT(google-build-using-namespace)

namespace {

std::string str(const String& text) { return std::string(view(text)); }

std::string pathOf(const Setting& setting) {
  return str(setting.group()) + "/" + str(setting.name());
}

}  // namespace

EntryPoint entryPoint() {
  static void* const module = ::dlopen(OMBE_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) ADD_FAILURE() << ::dlerror();
  return reinterpret_cast<EntryPoint>(::dlsym(module, kEntryPointName));
}

void CallLog::add(std::string call) {
  const std::lock_guard lock(mutex_);
  calls_.push_back(std::move(call));
}

std::vector<std::string> CallLog::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(calls_, {});
}

bool FakeSettings::get(const Setting& setting, SettingValue& out) const {
  const FaultPause pause;
  EXPECT_EQ(setting.mediaType(), MediaType::kSubtitle);
  const std::lock_guard lock(mutex_);
  const auto found = values_.find({str(setting.group()), str(setting.name())});
  if (found != values_.end()) out = found->second;
  return found != values_.end();
}

void FakeSettings::set(const Setting& setting, const SettingValue& value) {
  const FaultPause pause;
  const std::lock_guard lock(mutex_);
  if (value.asString() != nullptr) strings_.emplace_back(value.asString());
  values_[{str(setting.group()), str(setting.name())}] = value;
}

void FakeSettings::setString(const char* group, const char* key, const char* text) {
  set(Setting(MediaType::kSubtitle, group, key), SettingValue::string(new String(text)));
}

void FakeSettings::setRatio(std::uint32_t numerator, std::uint32_t denominator) {
  set(Setting(MediaType::kSubtitle, "FrameRate", "Ratio"),
      SettingValue::ratio({numerator, denominator}));
}

std::string FakeSettings::text(const char* group, const char* key) const {
  SettingValue value;
  if (!get(Setting(MediaType::kSubtitle, group, key), value)) return "none";
  if (const auto flag = value.asBoolean()) return *flag ? "true" : "false";
  if (const auto ratio = value.asRatio()) {
    return std::to_string(ratio->numerator) + "/" + std::to_string(ratio->denominator);
  }
  return value.asString() == nullptr ? "null" : "'" + str(*value.asString()) + "'";
}

bool FakeContext::supportsFormat(String formatName) {
  const FaultPause pause;
  asked.push_back(str(formatName));
  return answer;
}

FakeHost::~FakeHost() { EXPECT_TRUE(streams.empty()) << "streams were never withdrawn"; }

bool FakeHost::getValue(const Setting& setting, SettingValue& out) {
  const FaultPause pause;
  if (logsQueries) calls.add("getValue " + pathOf(setting));
  return settings.get(setting, out);
}

void FakeHost::setValue(const Setting& setting, const SettingValue& value) {
  const FaultPause pause;
  settings.set(setting, value);
  calls.add("setValue " + pathOf(setting));
}

UID FakeHost::newUID() {
  const FaultPause pause;
  calls.add("newUID");
  given_.insert(nextUID);
  return nextUID++;
}

String FakeHost::preferredLanguage() {
  const FaultPause pause;
  calls.add("preferredLanguage");
  return String(language.c_str());
}

double FakeHost::getTimeOffset() {
  const FaultPause pause;
  if (logsQueries) calls.add("getTimeOffset");
  return offset;
}

void FakeHost::streamCall(const std::string& call) {
  calls.add(call);
  if (const auto act = callBack) act(call);  // a copy, since it may disarm itself
}

Status FakeHost::announceStream(StreamInterface* stream) {
  const FaultPause pause;
  const UID uid = stream->streamUID();
  EXPECT_TRUE(given_.contains(uid)) << "announced a stream that the host gave no identifier";
  auto& owner = streams[uid];
  EXPECT_TRUE(owner == nullptr || owner.get() == stream) << "two streams under " << uid;
  if (owner.get() != stream) owner.reset(stream);
  streamCall("announce " + std::to_string(uid));
  return kGeneralFailure;  // plug-ins ignore it
}

Status FakeHost::withdrawStream(UID uid) {
  const FaultPause pause;
  auto stream = streams.extract(uid);
  EXPECT_FALSE(stream.empty()) << "withdrew a stream that the host does not own";
  if (keepsWithdrawn && !stream.empty()) withdrawn.push_back(std::move(stream.mapped()));
  streamCall("withdraw " + std::to_string(uid));
  return kGeneralFailure;
}

Status FakeHost::selectStream(UID uid, std::int32_t flag) {
  const FaultPause pause;
  EXPECT_TRUE(streams.contains(uid)) << "selected a stream that was not announced";
  streamCall("select " + std::to_string(uid) + " " + std::to_string(flag));
  return kGeneralFailure;
}

FakeController::~FakeController() { EXPECT_TRUE(consumers.empty()) << "was never deregistered"; }

bool FakeController::getValue(const Setting& setting, SettingValue& out) {
  const FaultPause pause;
  if (host_.logsQueries) calls.add("controller getValue " + pathOf(setting));
  return host_.settings.get(setting, out);
}

void FakeController::setValue(const Setting& setting, const SettingValue& /*value*/) {
  ADD_FAILURE() << "the controller was written to: " << pathOf(setting);
}

bool FakeController::registerConsumer(SettingConsumer* consumer) {
  const FaultPause pause;
  calls.add("register");
  const std::lock_guard lock(mutex_);
  if (std::find(consumers.begin(), consumers.end(), consumer) == consumers.end()) {
    consumers.push_back(consumer);
  }
  return false;
}

bool FakeController::unregisterConsumer(SettingConsumer* consumer) {
  const FaultPause pause;
  calls.add("unregister");
  const std::lock_guard lock(mutex_);
  std::erase(consumers, consumer);
  return false;
}

void FakeController::change(const char* group, const char* key, const SettingValue* value,
                            MediaType mediaType) {
  const Setting setting(mediaType, group, key);
  std::vector<SettingConsumer*> told;
  {
    const std::lock_guard lock(mutex_);
    told = consumers;
  }
  for (SettingConsumer* consumer : told) consumer->settingChanged(setting, value);
}

void FakeController::changeRatio(std::uint32_t numerator, std::uint32_t denominator) {
  host_.settings.setRatio(numerator, denominator);
  const SettingValue value = SettingValue::ratio({numerator, denominator});
  change("FrameRate", "Ratio", &value);
}

void FakeController::changeCodePage(const char* name) {
  host_.settings.setString("CodePage", "Name", name);
  String text(name);
  const SettingValue value = SettingValue::string(&text);
  change("CodePage", "Name", &value);
}

Component::Component(PluginContext* context) {
  if (entryPoint()(context, &plugin) != kSuccess) throw std::runtime_error("no component");
  void* found = nullptr;
  plugin->getInterface(kContainerInterfaceId, &found);
  container = static_cast<ContainerInterface*>(found);
  plugin->getInterface(kSubtitleControlInterfaceId, &found);
  control = static_cast<SubtitleControlInterface*>(found);
}

Component::~Component() { EXPECT_EQ(plugin->release(), 0); }

TempFile::TempFile(const std::string& content, const std::string& name) {
  std::string folder = (std::filesystem::temp_directory_path() / "ombe-XXXXXX").string();
  if (::mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = std::filesystem::path(folder) / name;
  std::ofstream(path_, std::ios::binary) << content;
}

TempFile::~TempFile() { std::filesystem::remove_all(path_.parent_path()); }

LogCapture::LogCapture() {
  Logger::instance().setSink([this](const LogRecord& record) {
    log_.add(std::string(record.channel) + " " + record.function + ":" +
             std::to_string(record.line) + " " + record.text);
  });
}

LogCapture::~LogCapture() { Logger::instance().setSink({}); }

Engine::Engine(bool attached) {
  if (!attached) return;
  component.container->attach(&host, 77);
  component.control->setSubtitleController(&controller);
}

Engine::~Engine() { component.container->deactivate(false); }

bool Engine::probe(const std::string& uri, FormatRequirementList* missing) {
  return component.container->probe(MediaSource(toByteString(uri)), 1, 2, missing);
}

Status Engine::open(const std::string& uri) {
  return component.container->open(MediaSource(toByteString(uri)));
}

Status Engine::activate() {
  return component.container->activateProgram(component.container->getProgramUIDs().head()->value);
}

StreamInterface* Engine::play(const std::string& content) {
  const TempFile file(content);
  if (open(file.uri()) != kSuccess || activate() != kSuccess) return nullptr;
  newestStream()->setTimeSource(&clock);
  return newestStream();
}

StreamInterface* Engine::newestStream() const {
  return host.streams.empty() ? nullptr : host.streams.rbegin()->second.get();
}

std::string readOne(StreamInterface& stream) {
  MediaChunk* chunk = nullptr;
  const Status status = stream.readStream(&chunk);
  const FaultPause pause;
  if (chunk == nullptr) return status == kSuccess ? "end" : status == -1 ? "wait" : "fail";
  EXPECT_EQ(status, kSuccess);
  EXPECT_EQ(chunk->chunkSize(), chunk->bufferSize());
  std::string text(reinterpret_cast<const char*>(chunk->lock()), chunk->bufferSize());
  chunk->unlock();
  std::replace(text.begin(), text.end(), '\n', '|');
  text = std::to_string(chunk->timestamp) + "+" + std::to_string(chunk->duration) + " " + text;
  chunk->allocator().deleteChunk(chunk);
  return text;
}

std::string readAll(StreamInterface& stream) {
  std::string all;
  for (std::string one = readOne(stream); one != "end"; one = readOne(stream)) {
    all += (all.empty() ? "" : " ; ") + one;
    if (one == "wait" || one == "fail") break;
  }
  return all;
}

}  // namespace ombe_test
