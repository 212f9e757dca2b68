// A plug-in with a container that answers every question and recognises no file. Replace the bodies
// one by one.
#include <ombe_core/container_interface.h>
#include <ombe_core/plugin.h>

using namespace Ombe;

namespace {

class Standalone final : public Plugin, public ContainerInterface {
 public:
  using Plugin::Plugin;

  Status getInterface(const String& identifier, void** out) override {
    const bool isContainer = view(identifier) == kContainerInterfaceId;
    *out = isContainer ? static_cast<ContainerInterface*>(this) : nullptr;
    return isContainer ? kSuccess : kUnknownInterface;
  }

  bool probe(const MediaSource&, std::int32_t, std::int32_t, FormatRequirementList*) override {
    return false;
  }
  void reservedSlot4(std::int32_t) override {}
  Status open(const MediaSource&) override { return kGeneralFailure; }
  Status reservedSlot6(std::int32_t) override { return kGeneralFailure; }
  ByteString getSourcePath() override { return {}; }
  Status close() override { return kSuccess; }
  UIDList getProgramUIDs() override { return {}; }
  ByteString getProgramName(UID) override { return {}; }
  Status activateProgram(UID) override { return kGeneralFailure; }
  Status deactivate(bool) override { return kSuccess; }
  Status getFileSize(std::uint64_t*) override { return kGeneralFailure; }
  std::int32_t findMediaTypeRank(const ByteString& name) override {
    return name == mediaTypeAt(0) ? 1 : -1;
  }
  std::uint32_t mediaTypeCount() override { return 1; }
  ByteString mediaTypeAt(std::uint32_t index) override {
    return index == 0 ? toByteString("text/x-standalone") : ByteString();
  }
  std::int32_t mediaTypeRankAt(std::uint32_t index) override { return index == 0 ? 1 : 0; }
};

}  // namespace

extern "C" OMBE_API Status __getPlugin(PluginContext* context, Plugin** out) {
  *out = new Standalone(context);
  return kSuccess;
}
