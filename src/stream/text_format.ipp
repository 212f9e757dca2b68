// The one file that the source of a format includes, to instantiate SubtitleParserTemplate over the
// format: the bodies of the container and of its streams.
#pragma once

#include "container/program.ipp"
#include "container/subtitle_parser_template.ipp"
#include "stream/overlay_stream.ipp"
#include "stream/stream_registry.ipp"
