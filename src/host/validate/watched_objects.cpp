#include "host/validate/watched_objects.h"

#include <utility>

namespace Ombe {
namespace {

std::string pathOf(const Setting& setting) {
  return std::string(view(setting.group())) + "/" + std::string(view(setting.name()));
}

void requireSubtitles(CallRecord& record, const Setting& setting) {
  if (setting.mediaType() != MediaType::kSubtitle) {
    record.addFoul("setting " + pathOf(setting) + " of media type " +
                   std::to_string(static_cast<int>(setting.mediaType())));
  }
}

}  // namespace

void CallRecord::add(const std::string& call) {
  {
    const std::lock_guard lock(mutex_);
    calls_.push_back(call);
  }
  comeBack(call);
}

void CallRecord::comeBack(const std::string& call) const {
  if (const auto act = comingBack) act(call);  // a copy, since it may disarm itself
}

void CallRecord::addFoul(const std::string& call) {
  const std::lock_guard lock(mutex_);
  if (foul_.empty()) foul_ = call;
}

std::vector<std::string> CallRecord::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(calls_, {});
}

std::string CallRecord::foul() const {
  const std::lock_guard lock(mutex_);
  return foul_;
}

bool WatchedContext::supportsFormat(String formatName) {
  record_.add("supportsFormat " + std::string(view(formatName)));
  return showsFormats;
}

bool WatchedController::ask(const char* call, const Setting& setting, SettingValue& out) {
  requireSubtitles(record_, setting);
  const bool isThere = real_.getValue(setting, out);
  record_.add(call + pathOf(setting));
  return isThere;
}

void WatchedController::setValue(const Setting& setting, const SettingValue& value) {
  requireSubtitles(record_, setting);
  real_.setValue(setting, value);
  record_.add("setValue " + pathOf(setting));
}

bool WatchedController::registerConsumer(SettingConsumer* consumer) {
  if (consumer == nullptr) record_.addFoul("registerConsumer without a consumer");
  {
    const std::lock_guard lock(mutex_);
    consumers_.insert(consumer);
  }
  const bool isNew = real_.registerConsumer(consumer);
  record_.add("registerConsumer");
  return isNew;
}

bool WatchedController::unregisterConsumer(SettingConsumer* consumer) {
  {
    const std::lock_guard lock(mutex_);
    consumers_.erase(consumer);
  }
  const bool wasThere = real_.unregisterConsumer(consumer);
  record_.add("unregisterConsumer");
  return wasThere;
}

std::set<SettingConsumer*> WatchedController::consumers() const {
  const std::lock_guard lock(mutex_);
  return consumers_;
}

UID WatchedHost::newUID() {
  static std::atomic<UID> next{UID{1} << 33};
  const UID uid = next++;
  {
    const std::lock_guard lock(mutex_);
    given_.insert(uid);
  }
  record_.add("newUID");
  return uid;
}

String WatchedHost::preferredLanguage() {
  record_.add("preferredLanguage");
  return {language.c_str(), static_cast<std::uint32_t>(language.size()), *languageAllocator};
}

Status WatchedHost::announceStream(StreamInterface* stream) {
  if (stream == nullptr) return record_.addFoul("announceStream without a stream"), kGeneralFailure;
  const UID uid = stream->streamUID();
  {
    const std::lock_guard lock(mutex_);
    if (!given_.contains(uid)) record_.addFoul("announceStream with a UID that is not the host's");
  }
  std::unique_ptr<StreamInterface>& owner = streams[uid];
  if (owner != nullptr && owner.get() != stream) record_.addFoul("announceStream of a UID in use");
  if (owner.get() != stream) owner.reset(stream);
  record_.add("announceStream " + std::to_string(uid));
  return kGeneralFailure;  // plug-ins ignore it
}

Status WatchedHost::withdrawStream(UID uid) {
  auto stream = streams.extract(uid);
  if (stream.empty()) {
    record_.addFoul("withdrawStream of a stream that is not announced");
  } else if (keepsWithdrawn) {
    withdrawn.push_back(std::move(stream.mapped()));
  }
  record_.add("withdrawStream " + std::to_string(uid));
  return kGeneralFailure;
}

Status WatchedHost::selectStream(UID uid, std::int32_t flag) {
  if (!streams.contains(uid)) record_.addFoul("selectStream of a stream that is not announced");
  if (flag != 1) record_.addFoul("selectStream with the flag " + std::to_string(flag));
  selected = uid;
  record_.add("selectStream " + std::to_string(uid));
  return kGeneralFailure;
}

}  // namespace Ombe
