// Queries, settings and text of the container; included where a format's container is instantiated.
#pragma once

#include "container/subtitle_parser_template.h"
#include "ombe_core/file.h"
#include "ombe_core/string_tools.h"
#include "ombe_core/subtitle_settings.h"
#include "stream/entries/due_time.h"
#include "text/charset.h"
#include "text/file_reader.h"
#include "text/text_settings.h"

namespace Ombe {

template <typename Format>
SubtitleParserTemplate<Format>::SubtitleParserTemplate()
    : allocator(std::make_unique<MediaBufferAllocator>()) {}

template <typename Format>
SubtitleParserTemplate<Format>::~SubtitleParserTemplate() {
  SubtitleParserTemplate::close();
}

template <typename Format>
ByteString SubtitleParserTemplate<Format>::getSourcePath() {
  return sourcePath;
}

template <typename Format>
Status SubtitleParserTemplate<Format>::close() {
  return kSuccess;
}

template <typename Format>
Status SubtitleParserTemplate<Format>::getFileSize(std::uint64_t* size) {
  if (size == nullptr) return kGeneralFailure;
  File file;
  const StringTools::UString path(sourcePath.c_str(), sourcePath.length());
  if (file.open(StringTools::uStringToWstring(path), FileOpenMode::kRead) != 0) {
    return kGeneralFailure;
  }
  *size = file.getTotalSize();
  return kSuccess;
}

template <typename Format>
bool SubtitleParserTemplate<Format>::reservedSlot21(std::int32_t /*argument*/) {
  return false;
}

template <typename Format>
void SubtitleParserTemplate<Format>::setSubtitleController(SubtitleController* controller) {
  if (controller != nullptr) subtitleController = controller;
}

/// Only the code page concerns every format; entries delivered from now on are converted from it.
template <typename Format>
void SubtitleParserTemplate<Format>::settingChanged(const Setting& setting,
                                                    const SettingValue* value) {
  if (value == nullptr || !value->isString() || !(setting == codePageSetting())) return;
  const String* name = value->asString();
  setCodePage(name == nullptr ? String() : *name);
}

/// On std::bad_alloc the old name stays.
template <typename Format>
void SubtitleParserTemplate<Format>::setCodePage(const String& name) {
  String copy(name);
  const std::lock_guard lock(codePageMutex);
  codePageName.swap(copy);
}

template <typename Format>
String SubtitleParserTemplate<Format>::codePage() {
  const std::lock_guard lock(codePageMutex);
  return codePageName;
}

template <typename Format>
bool SubtitleParserTemplate<Format>::convertEntryText(const unsigned char* bytes,
                                                      std::uint32_t length, ByteString& out) {
  if (readFlagSetting(subtitleController, autodetectedSetting())) return false;
  return convertAndCheck(codePage(), bytes, length, out);
}

/// The end of a probe: whether the engine shows the streams' text format, which is appended to
/// `missing` (may be null) when it does not. False without a context.
template <typename Format>
bool SubtitleParserTemplate<Format>::isShown(PluginContext* context,
                                             FormatRequirementList* missing) {
  if (context == nullptr) return false;
  FormatRequirement format = FormatRequirement::text();
  defaultCodePage(format.name);
  if (context->supportsFormat(format.name)) return true;
  if (missing != nullptr) missing->push_back(format);
  return false;
}

/// Reads a file for parsing; `limit` is in bytes. Text with an encoding signature is decoded here
/// and now, any other is left to convertEntryText. A text that does not decode stays as it was
/// read.
template <typename Format>
bool SubtitleParserTemplate<Format>::readSubtitleText(const ByteString& path, ByteString& out,
                                                      std::uint32_t limit) {
  const bool isRead = readFile(this->host, path, out, limit);
  if (const String* name = readStringSetting(this->host, codePageSetting())) {
    setCodePage(*name);
  }
  if (readFlagSetting(this->host, autodetectedSetting())) {
    ByteString decoded;
    if (decodeText(this->host, out.data(), out.length(), decoded)) out = std::move(decoded);
  }
  return isRead;
}

/// Milliseconds that the host adds to every time; 0 without a host.
template <typename Format>
std::int32_t SubtitleParserTemplate<Format>::mediaTimeOffset() const {
  return this->host == nullptr ? 0 : wholeMilliseconds(this->host->getTimeOffset());
}

}  // namespace Ombe
