// Options that several commands have.
#pragma once

#include <string>
#include <vector>

#include "host/batch/outputs.h"
#include "host/cli/command.h"
#include "host/io/color_choice.h"
#include "host/session/session.h"
#include "host/text/markup.h"

namespace Ombe {

Option fileOption(std::vector<std::string>& files);
Option filesOption(std::vector<std::string>& files);
/// The same, with folders among them.
Option sourcesOption(std::vector<std::string>& sources);
/// How many files to work on at once; 0 without it.
Option jobsOption(std::size_t& jobs);
/// Where the outputs of many sources go.
std::vector<Option> outputOptions(OutputChoice& choice);
Option jsonOption(bool& json);
Option colorOption(ColorMode& color);
Option colorOrderOption(ColorOrder& order);

/// The folder of plug-ins beside that of this program; empty when that is not known.
std::string pluginsBesideProgram();

/// A command's own options, and behind them those of every command that meets a source.
std::vector<Option> withSourceOptions(std::vector<Option> own, SessionOptions& session);

}  // namespace Ombe
