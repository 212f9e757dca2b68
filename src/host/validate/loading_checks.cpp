// Loading the binary and making components.
#include <dlfcn.h>

#include <filesystem>

#include "host/validate/exported_symbols.h"
#include "host/validate/verdict.h"
#include "host/validate/watched_engine.h"

namespace Ombe {
namespace {

void* load(const Subject& subject) {
  void* module = ::dlopen(subject.plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
  const char* reason = module == nullptr ? ::dlerror() : nullptr;
  expect(module != nullptr, reason == nullptr ? "it does not load" : reason);
  return module;
}

EntryPoint entryPointOf(void* module) {
  const auto entryPoint = reinterpret_cast<EntryPoint>(::dlsym(module, kEntryPointName));
  expect(entryPoint != nullptr, std::string("it exports no ") + kEntryPointName);
  return entryPoint;
}

Plugin& make(EntryPoint entryPoint, PluginContext& context) {
  Plugin* plugin = nullptr;
  expectSame("__getPlugin", kSuccess, entryPoint(&context, &plugin));
  expect(plugin != nullptr, "__getPlugin gave 0 and no component");
  return *plugin;
}

void makeAndRelease(const Subject& subject) {
  CallRecord record;
  WatchedContext context(record);
  expectSame("release", 0, make(entryPointOf(load(subject)), context).release());
}

void exportsOneSymbol(const Subject& subject) {
  for (const std::string& name : exportedSymbols(load(subject))) {
    expect(name == kEntryPointName, "it exports " + name + ", too");
  }
}

void makesComponentsApart(const Subject& subject) {
  CallRecord record;
  WatchedContext context(record), otherContext(record);
  const EntryPoint entryPoint = entryPointOf(load(subject));
  Plugin& first = make(entryPoint, context);
  Plugin& second = make(entryPoint, otherContext);
  expect(&first != &second, "__getPlugin gave the same component twice");
  expectSame("holdCount of a new component", 1, first.holdCount());
  expectSame("release of the first", 0, first.release());
  expectSame("holdCount of the second", 1, second.holdCount());
  expect(second.getPluginContext() == &otherContext, "the second has the first one's context");
  expectSame("release of the second", 0, second.release());
}

void asksNothing(const Subject& subject) {
  CallRecord record;
  WatchedContext context(record);
  make(entryPointOf(load(subject)), context).release();
  expect(record.foul().empty(), "it called " + record.foul());
}

void loadsAgain(const Subject& subject) {
  CallRecord record;
  WatchedContext context(record);
  for (int round = 0; round < 3; ++round) {
    void* module = load(subject);
    make(entryPointOf(module), context).release();
    expectSame("dlclose", 0, ::dlclose(module));
  }
}

/// Under another name, so that it is loaded beside the first whatever keeps modules loaded.
void loadsTwice(const Subject& subject) {
  namespace fs = std::filesystem;
  std::string folder = (fs::temp_directory_path() / "ombe-XXXXXX").string();
  expect(::mkdtemp(folder.data()) != nullptr, "no temporary folder can be made");
  const Subject copy{folder + "/copy.so", {}};
  std::error_code error;
  fs::copy_file(subject.plugin, copy.plugin, error);
  void* first = error ? nullptr : ::dlopen(subject.plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* second = error ? nullptr : ::dlopen(copy.plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
  fs::remove_all(folder, error);
  expect(first != nullptr && second != nullptr, "it and a copy of it do not load together");
  CallRecord record;
  WatchedContext context(record);
  Plugin& one = make(entryPointOf(first), context);
  expectSame("release of the copy's component", 0, make(entryPointOf(second), context).release());
  expectSame("dlclose of the copy", 0, ::dlclose(second));
  expectSame("release of the first one's", 0, one.release());
}

constexpr ContractCheck kLoadingChecks[] = {
    {"loading.loads", kGettingAComponent, "the loader finds everything that it needs",
     [](const Subject& subject) { load(subject); }},
    {"loading.entry-point", kGettingAComponent, "it exports __getPlugin",
     [](const Subject& subject) { entryPointOf(load(subject)); }},
    {"loading.component", kGettingAComponent,
     "__getPlugin gives 0 and a component, whose release gives 0", makeAndRelease},
    {"loading.one-symbol", kGettingAComponent,
     "__getPlugin is the only exported symbol, weak ones of headers apart", exportsOneSymbol},
    {"loading.components-apart", kGettingAComponent,
     "every call of __getPlugin makes a component that counts 1", makesComponentsApart},
    {"loading.context-slots", kTables, "making a component calls no slot that is the engine's",
     asksNothing},
    {"loading.again", kGettingAComponent, "it can be loaded, used and closed again and again",
     loadsAgain},
    {"loading.twice", kGettingAComponent, "it can be loaded beside a copy of itself", loadsTwice},
};

}  // namespace

std::span<const ContractCheck> loadingChecks() { return kLoadingChecks; }

}  // namespace Ombe
