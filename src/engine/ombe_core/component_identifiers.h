// Identifiers of the engine's vocabulary that belong to no interface declared here.
#pragma once

namespace Ombe {

inline constexpr char kComponentInterfaceId[] = "com.kelm.streamengine.interface.component";
inline constexpr char kInputComponentId[] = "com.kelm.streamengine.component.input";
inline constexpr char kInputInterfaceId[] = "com.kelm.streamengine.interface.input";
inline constexpr char kSingleOutputComponentId[] = "com.kelm.streamengine.component.output.single";
inline constexpr char kMultipleOutputComponentId[] =
    "com.kelm.streamengine.component.output.multiple";
inline constexpr char kOutputComponentId[] = "com.kelm.streamengine.component.output";
inline constexpr char kOutputInterfaceId[] = "com.kelm.streamengine.interface.output";

}  // namespace Ombe
