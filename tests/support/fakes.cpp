#include "support/fakes.h"

#include <dlfcn.h>

#include <algorithm>
#include <fstream>

#include "ombe_core/buffer_allocator.h"
#include "support/paths.h"

namespace ombe_test {

using namespace Ombe;  // NOLINT(google-build-using-namespace)

std::string pathOf(const Setting& setting) {
  return std::string(view(setting.group())) + "/" + std::string(view(setting.name()));
}

EntryPoint entryPoint() {
  static void* const module = ::dlopen(kPlugin, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) ADD_FAILURE() << ::dlerror();
  return reinterpret_cast<EntryPoint>(::dlsym(module, kEntryPointName));
}

bool FakeSettings::get(const Setting& setting, SettingValue& out) const {
  EXPECT_EQ(setting.mediaType(), MediaType::kSubtitle);
  const std::lock_guard lock(mutex_);
  const auto found = values_.find(pathOf(setting));
  if (found != values_.end()) out = found->second;
  return found != values_.end();
}

void FakeSettings::set(const Setting& setting, const SettingValue& value) {
  const std::lock_guard lock(mutex_);
  if (value.asString() != nullptr) strings_.emplace_back(value.asString());
  values_[pathOf(setting)] = value;
}

std::string FakeSettings::text(const char* group, const char* key) const {
  SettingValue value;
  if (!get(Setting(MediaType::kSubtitle, group, key), value)) return "none";
  if (const auto flag = value.asBoolean()) return *flag ? "true" : "false";
  return value.asString() == nullptr ? "null" : "'" + std::string(view(*value.asString())) + "'";
}

bool FakeHost::query(const char* call, const Setting& setting, SettingValue& out) {
  const FaultPause pause;
  told(call + pathOf(setting), logsQueries);
  return settings.get(setting, out);
}

Status FakeHost::announceStream(StreamInterface* stream) {
  const FaultPause pause;
  const UID uid = stream->streamUID();
  EXPECT_TRUE(given_.contains(uid)) << "announced a stream that the host gave no identifier";
  auto& owner = streams[uid];
  EXPECT_TRUE(owner == nullptr || owner.get() == stream) << "two streams under " << uid;
  if (owner.get() != stream) owner.reset(stream);
  told("announce " + std::to_string(uid));
  return kGeneralFailure;  // plug-ins ignore it
}

Status FakeHost::withdrawStream(UID uid) {
  const FaultPause pause;
  EXPECT_EQ(streams.erase(uid), 1U) << "withdrew a stream that the host does not own";
  told("withdraw " + std::to_string(uid));
  return kGeneralFailure;
}

Status FakeHost::selectStream(UID uid, std::int32_t flag) {
  const FaultPause pause;
  EXPECT_TRUE(streams.contains(uid)) << "selected a stream that was not announced";
  told("select " + std::to_string(uid) + " " + std::to_string(flag));
  return kGeneralFailure;
}

bool FakeController::enlist(const char* call, SettingConsumer* consumer, std::size_t times) {
  const FaultPause pause;
  host_.told(call);
  const std::lock_guard lock(mutex_);
  std::erase(consumers, consumer);
  consumers.insert(consumers.end(), times, consumer);
  return false;
}

void FakeController::change(const char* group, const char* key, const SettingValue* value,
                            MediaType mediaType) {
  const Setting setting(mediaType, group, key);
  std::unique_lock lock(mutex_);
  const auto told = consumers;
  lock.unlock();
  for (SettingConsumer* consumer : told) consumer->settingChanged(setting, value);
}

Component::Component(PluginContext* context) {
  if (entryPoint()(context, &plugin) != kSuccess) throw std::runtime_error("no component");
  void* found = nullptr;
  plugin->getInterface(kContainerInterfaceId, &found);
  container = static_cast<ContainerInterface*>(found);
  plugin->getInterface(kSubtitleControlInterfaceId, &found);
  control = static_cast<SubtitleControlInterface*>(found);
}

TempFile::TempFile(const std::string& content, const std::string& name) {
  std::string folder = (std::filesystem::temp_directory_path() / "ombe-XXXXXX").string();
  if (::mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = std::filesystem::path(folder) / name;
  std::ofstream(path_, std::ios::binary) << content;
}

StreamInterface* Engine::play(const std::string& content) {
  const TempFile file(content);
  if (open(file.uri()) != kSuccess || activate() != kSuccess) return nullptr;
  newestStream()->setTimeSource(&clock);
  return newestStream();
}

std::string readOne(StreamInterface& stream) {
  static int stale = 0;
  auto* chunk = reinterpret_cast<MediaChunk*>(&stale);  // to be overwritten whatever the answer
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
