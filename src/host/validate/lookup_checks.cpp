// Looking up interfaces, and the count of references.
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"
#include "ombe_core/component_identifiers.h"

namespace Ombe {
namespace {

constexpr const char* kVocabulary[] = {
    kContainerInterfaceId, kSubtitleControlInterfaceId, kComponentInterfaceId,
    kInputComponentId,     kInputInterfaceId,           kSingleOutputComponentId,
    kOutputComponentId,    kOutputInterfaceId,          kMultipleOutputComponentId,
};

struct Answer {
  Status status;
  void* found;
};

/// The output is something before, so that an answer that leaves it alone is seen.
Answer lookUp(Plugin& plugin, const std::string& identifier) {
  Answer answer{};
  answer.found = &answer;
  answer.status = plugin.getInterface(
      {identifier.data(), static_cast<std::uint32_t>(identifier.size())}, &answer.found);
  if (answer.found == &answer) {
    report(Outcome::kFailed, "looking up " + valueText(identifier) + " left the output as it was");
  }
  return answer;
}

void expectRefusal(Plugin& plugin, const std::string& identifier) {
  const auto [status, found] = lookUp(plugin, identifier);
  expectSame("looking up " + valueText(identifier), kUnknownInterface, status);
  expect(found == nullptr, "looking up " + valueText(identifier) + " gave a pointer with status 3");
}

void answersOrRefuses(Plugin& plugin) {
  for (const char* identifier : kVocabulary) {
    const auto [status, found] = lookUp(plugin, identifier);
    const bool isRefusal = status == kUnknownInterface && found == nullptr;
    expect(isRefusal || (status == kSuccess && found != nullptr),
           std::string("looking up ") + identifier + " gave " + valueText(status) + " with " +
               (found == nullptr ? "a null pointer" : "a pointer"));
  }
}

void refusesOthers(Plugin& plugin) {
  const std::string base = "com.kelm.streamengine.interface.";
  for (const std::string& other : {base + "none", base, std::string("x"), std::string(5000, 'c')}) {
    expectRefusal(plugin, other);
  }
}

void refusesNothing(Plugin& plugin) { expectRefusal(plugin, ""); }

void comparesAllBytes(Plugin& plugin) {
  for (const std::string identifier : kVocabulary) {
    if (lookUp(plugin, identifier).found == nullptr) continue;
    std::string otherCase = identifier;
    otherCase[0] = 'C';
    const std::string shorter = identifier.substr(0, identifier.size() - 1);
    for (const std::string& other :
         {shorter, identifier + " ", identifier + '\0', " " + identifier, otherCase}) {
      expectRefusal(plugin, other);
    }
  }
}

void answersTheSame(Plugin& plugin) {
  for (const char* identifier : kVocabulary) {
    expect(lookUp(plugin, identifier).found == lookUp(plugin, identifier).found,
           std::string("looking up ") + identifier + " twice gave two pointers");
  }
}

void retainsNothing(Plugin& plugin) {
  for (const char* identifier : kVocabulary) {
    lookUp(plugin, identifier);
    expectSame(std::string("holdCount after looking up ") + identifier, 1, plugin.holdCount());
  }
}

void counts(Plugin& plugin) {
  expectSame("retain of a component that counts 1", 2, plugin.retain());
  expectSame("retain of one that counts 2", 3, plugin.retain());
  expectSame("holdCount of one that counts 3", 3, plugin.holdCount());
  expectSame("release of one that counts 3", 2, plugin.release());
  expectSame("release of one that counts 2", 1, plugin.release());
  expectSame("holdCount of one that counts 1", 1, plugin.holdCount());
}

void informs(Plugin& plugin) {
  const PluginInfo* info = plugin.getPluginInfo();
  expect(info != nullptr, "getPluginInfo gave a null pointer");
  expect(info->size >= sizeof(PluginInfo),
         "getPluginInfo gave a record of " + valueText(info->size) + " bytes instead of 8");
  expect(info->engineVersion != 0, "getPluginInfo gave the engine version 0");
}

void keepsContext(const Subject& subject) {
  WatchedEngine engine(subject, WatchedEngine::Attach::kLater);
  expect(engine.plugin->getPluginContext() == &engine.context,
         "getPluginContext gave another pointer than __getPlugin was given");
}

constexpr ContractCheck kLookupChecks[] = {
    {"lookup.vocabulary", kGettingAComponent,
     "an identifier gives 0 with a pointer, or 3 with a null pointer", answersOrRefuses},
    {"lookup.unknown-identifier", kGettingAComponent,
     "an unknown identifier gives status 3 and a null pointer", refusesOthers},
    {"lookup.empty-identifier", kGettingAComponent,
     "an empty identifier gives status 3 and a null pointer", refusesNothing},
    {"lookup.exact-bytes", kGettingAComponent,
     "what is longer, shorter or spelled otherwise than an identifier is another one",
     comparesAllBytes},
    {"lookup.same-pointer", kGettingAComponent,
     "an interface is part of the component: looking it up again gives the same pointer",
     answersTheSame},
    {"lookup.retains-nothing", kGettingAComponent, "looking up an interface retains nothing",
     retainsNothing},
    {"lookup.count", kTables, "retain and release give the new count, holdCount the same", counts},
    {"lookup.plugin-info", kTables, "getPluginInfo gives a record of 8 bytes with a version",
     informs},
    {"lookup.context", kTables, "getPluginContext gives what __getPlugin was given", keepsContext},
};

}  // namespace

std::span<const ContractCheck> lookupChecks() { return kLookupChecks; }

}  // namespace Ombe
