// The MPL2 plug-in's one component.
#pragma once

#include "container/subtitle_parser_template.h"
#include "ombe_core/plugin.h"

namespace Ombe {

/// A subtitle container for MPL2 files. Its lines state times, so no frame rate concerns it;
/// program, streams, seeking, code pages and notifications are the template's.
class Mpl2Container final : public Plugin, public SubtitleParserTemplate<Mpl2Container> {
 public:
  explicit Mpl2Container(PluginContext* context) : Plugin(context) {}

  Status getInterface(const String& identifier, void** out) override;

  bool probe(const MediaSource& source, std::int32_t reserved1, std::int32_t reserved2,
             FormatRequirementList* missing) override;
  void reservedSlot4(std::int32_t argument) override;
  Status open(const MediaSource& source) override;
  Status reservedSlot6(std::int32_t argument) override;
  void defaultCodePage(char* buffer) override;
  std::uint32_t mediaTypeCount() override;
  ByteString mediaTypeAt(std::uint32_t index) override;
  std::int32_t mediaTypeRankAt(std::uint32_t index) override;
  std::int32_t findMediaTypeRank(const ByteString& name) override;
};

}  // namespace Ombe
