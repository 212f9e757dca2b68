// The container that all text subtitle formats share.
#pragma once

#include <boost/thread/lock_types.hpp>
#include <boost/thread/recursive_mutex.hpp>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "ombe_core/container_host.h"
#include "ombe_core/container_interface.h"
#include "ombe_core/plugin_context.h"
#include "ombe_core/setting_consumer.h"
#include "ombe_core/subtitle_control_interface.h"
#include "ombe_core/subtitle_controller.h"
#include "stream/entries/entry_list.h"
#include "stream/entries/media_buffer_allocator.h"

namespace Ombe {

/// Presents an opened subtitle file as one program with its streams. A format derives from it and
/// supplies detection, opening, media types and the stream's text format; the format's source file
/// includes stream/text_format.ipp and instantiates the template.
///
/// `mutex` serialises opening, activation, release, changes of rate and the stream operations that
/// read or move the position; being recursive, it may be taken again by what they call. A store
/// that is written to by one component may tell another one on the spot, so a notification takes it
/// only for a setting that no plug-in writes. `codePageMutex` guards `codePageName` alone, and
/// nothing is called while it is held. Host and controller are never owned.
template <typename Format>
class SubtitleParserTemplate : public ContainerInterface,
                               public SubtitleControlInterface,
                               public SettingConsumer {
 public:
  class OverlayStream;

  SubtitleParserTemplate();
  ~SubtitleParserTemplate() override;

  ByteString getSourcePath() override;
  Status close() override;
  UIDList getProgramUIDs() override;
  ByteString getProgramName(UID program) override;
  Status activateProgram(UID program) override;
  Status deactivate(bool keepStreams) override;
  Status getFileSize(std::uint64_t* size) override;

  /// Slot 20. Writes the name of the streams' text format with its NUL into a buffer of 5 bytes or
  /// more.
  virtual void defaultCodePage(char* buffer) = 0;
  virtual bool reservedSlot21(std::int32_t argument);
  /// Slot 22.
  void setSubtitleController(SubtitleController* controller) override;
  /// Slot 23.
  void settingChanged(const Setting& setting, const SettingValue* value) override;
  /// Slot 24. Converts one entry's text to UTF-8. False, with `out` untouched, when it is UTF-8
  /// already or cannot be converted. Needs no lock.
  virtual bool convertEntryText(const unsigned char* bytes, std::uint32_t length, ByteString& out);

 protected:
  using Lock = boost::unique_lock<boost::recursive_mutex>;

  bool isShown(PluginContext* context, FormatRequirementList* missing);
  bool readSubtitleText(const ByteString& path, ByteString& out, std::uint32_t limit);
  void addStream(EntryList& list, const ByteString& name, const String& language,
                 const String& region);
  void scaleTimes(double factor);
  void releaseStreams();
  std::int32_t mediaTimeOffset() const;

  SubtitleController* subtitleController = nullptr;
  String codePageName;    // code page of text that was not decoded when the file was read; guarded
                          // by codePageMutex
  ByteString sourcePath;  // local path of the source opened last
  boost::recursive_mutex mutex;
  std::map<UID, OverlayStream*> streams;  // owned by the host once announced
  String preferredLanguage;
  UID programUID = kNoUID;
  std::unique_ptr<MediaBufferAllocator> allocator;

 private:
  void retireStream(UID uid, OverlayStream& stream);
  UID streamToSelect() const;
  void setCodePage(const String& name);
  String codePage();

  std::mutex codePageMutex;
};

}  // namespace Ombe
