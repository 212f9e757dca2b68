#include "mpl2/mpl2_container.h"

#include <cstring>

#include "stream/text_format.ipp"

namespace Ombe {

template class SubtitleParserTemplate<Mpl2Container>;

namespace {

constexpr char kMediaType[] = "text/x-mpl2";
constexpr std::int32_t kRank = 1;

}  // namespace

Status Mpl2Container::getInterface(const String& identifier, void** out) {
  *out = nullptr;
  if (view(identifier) == kContainerInterfaceId) {
    *out = static_cast<ContainerInterface*>(this);
  } else if (view(identifier) == kSubtitleControlInterfaceId) {
    *out = static_cast<SubtitleControlInterface*>(this);
  } else {
    return kUnknownInterface;
  }
  return kSuccess;
}

void Mpl2Container::reservedSlot4(std::int32_t /*argument*/) {}

Status Mpl2Container::reservedSlot6(std::int32_t /*argument*/) { return kGeneralFailure; }

void Mpl2Container::defaultCodePage(char* buffer) { std::memcpy(buffer, "UTF8", 5); }

std::uint32_t Mpl2Container::mediaTypeCount() { return 1; }

ByteString Mpl2Container::mediaTypeAt(std::uint32_t index) {
  return index == 0 ? toByteString(kMediaType) : ByteString();
}

std::int32_t Mpl2Container::mediaTypeRankAt(std::uint32_t index) { return index == 0 ? kRank : 0; }

std::int32_t Mpl2Container::findMediaTypeRank(const ByteString& name) {
  return view(name) == kMediaType ? kRank : -1;
}

}  // namespace Ombe

// The one symbol that the module exports.
extern "C" OMBE_API Ombe::Status __getPlugin(  // NOLINT(bugprone-reserved-identifier)
    Ombe::PluginContext* context, Ombe::Plugin** out) {
  *out = new Ombe::Mpl2Container(context);
  return Ombe::kSuccess;
}
