// The MicroDVD plug-in's one component.
#pragma once

#include <cstdint>
#include <map>

#include "container/subtitle_parser_template.h"
#include "microdvd/lines/frame_rate.h"
#include "ombe_core/plugin.h"

namespace Ombe {

/// A subtitle container for MicroDVD files. Destroyed by its own reference count; calls nothing on
/// host or controller while being destroyed, so the engine deactivates it first.
class MicroDVDContainer final : public Plugin, public SubtitleParserTemplate<MicroDVDContainer> {
 public:
  explicit MicroDVDContainer(PluginContext* context);
  ~MicroDVDContainer() override;

  Status getInterface(const String& identifier, void** out) override;

  // In the order in which the component's primary table continues.
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
  void settingChanged(const Setting& setting, const SettingValue* value) override;

 private:
  /// Byte-wise lexicographic order, the greater name first.
  struct GreaterFirst {
    bool operator()(const ByteString& a, const ByteString& b) const { return view(a) > view(b); }
  };

  FrameRate rateFromSetting() const;
  void changeFrameRate(Ratio wanted);

  std::map<ByteString, std::int32_t, GreaterFirst> mediaTypeRanks;
  std::uint64_t frameRateNumerator = 0;  // rate of the entries' times
  std::uint64_t frameRateDenominator = 0;
  std::uint64_t fileFrameRateNumerator = 0;  // rate that a file's header stated last
  std::uint64_t fileFrameRateDenominator = 0;
};

}  // namespace Ombe
