// The engine's identifiers as strings, built when the plug-in is loaded.
#pragma once

#include "ombe_core/kelm_string.h"

namespace Ombe {

/// Read-only from the load of the plug-in until its end. The lookup answers the first and the last;
/// the others complete the vocabulary.
struct Identifiers {
  String containerInterface;
  String componentInterface;
  String inputComponent;
  String inputInterface;
  String singleOutputComponent;
  String multipleOutputComponent;
  String outputComponent;
  String outputInterface;
  String subtitleControlInterface;
};

extern const Identifiers identifiers;

}  // namespace Ombe
