#include "commands/WordData.h"

#include <string>

#include "commands/CommandError.h"
#include "desktops/posix/Translation.h"
#include "words/BuiltinPacks.h"
#include "words/Proto.h"
#include "words/ResourceLocator.h"

namespace tessarok::commands {

namespace {

void requireFile(const std::string& name) {
  if (ResourceLocator::find(name)) return;
  throw CommandError(
      posix::translated("the data file {1} is missing; see tessarok check-data", {name + ".txt"}));
}

}  // namespace

void requireWordData(Packs packs) {
  for (const auto* name : {"dict_en", "dict_ru", "freq_short_en", "freq_short_ru"}) {
    requireFile(name);
  }
  for (const auto& kind : Proto::kKinds)
    requireFile(kind.resource);
  if (packs == Packs::unused) return;
  for (const auto& pack : BuiltinPacks::all())
    requireFile(pack.resource);
}

}  // namespace tessarok::commands
