// Questions to a plug-in whose answers the engine's interfaces fix, whatever format it reads.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Ombe {

class Plugin;
class WatchedEngine;
struct Playing;

/// What is validated: a plug-in, and files of its format.
struct Subject {
  std::string plugin;                ///< absolute path
  std::vector<std::string> samples;  ///< absolute paths; may be empty
};

/// One question. It is asked in a process of its own, and ends that process by `report` as soon as
/// an answer differs; coming back means that all was as expected.
struct ContractCheck {
  const char* name;      ///< "group.what-it-asks"
  const char* section;   ///< heading of docs/engine-interface.md that says so
  const char* expected;  ///< in a sentence
  /// Asks the binary; a new component that is attached to nothing; one in an engine, attached; or
  /// the same that plays a sample, for each sample.
  std::variant<void (*)(const Subject&), void (*)(Plugin&), void (*)(WatchedEngine&),
               void (*)(Playing&)>
      ask;

  [[nodiscard]] std::string_view group() const {
    const std::string_view whole = name;
    return whole.substr(0, whole.find('.'));
  }
};

// Headings of docs/engine-interface.md, as links name them.
inline constexpr char kGettingAComponent[] = "getting-a-component";
inline constexpr char kStatusCodes[] = "status-codes";
inline constexpr char kTables[] = "tables";
inline constexpr char kRecords[] = "records";
inline constexpr char kSettings[] = "settings";
inline constexpr char kOwnership[] = "who-owns-what";
inline constexpr char kThreads[] = "threads";
inline constexpr char kForgiveness[] = "what-a-component-forgives";

// A file each.
std::span<const ContractCheck> loadingChecks();
std::span<const ContractCheck> lookupChecks();
std::span<const ContractCheck> containerChecks();
std::span<const ContractCheck> programChecks();
std::span<const ContractCheck> streamChecks();
std::span<const ContractCheck> readingChecks();
std::span<const ContractCheck> settingsChecks();
std::span<const ContractCheck> allocatorChecks();
std::span<const ContractCheck> threadsChecks();
std::span<const ContractCheck> comingBackChecks();
std::span<const ContractCheck> misuseChecks();
std::span<const ContractCheck> memoryChecks();

/// In the order in which they are asked.
std::vector<ContractCheck> allContractChecks();

}  // namespace Ombe
