#include "Manifest.h"

#include <map>
#include <nlohmann/json.hpp>

#include "Sha256.h"

namespace tessarok::makedata {

namespace {

using Json = nlohmann::ordered_json;

Json versionJson(const std::optional<std::string>& version) {
  return version ? Json(*version) : Json(nullptr);
}

Json inputsJson(const std::vector<InputRecord>& inputs, const VersionLookup& versionOf) {
  std::map<std::string, Json> versions{{kOwnLists, nullptr}};
  Json list = Json::array();
  for (const InputRecord& input : inputs) {
    if (!versions.contains(input.package)) {
      versions[input.package] = versionJson(versionOf(input.package));
    }
    list.push_back({{"package", input.package},
                    {"version", versions[input.package]},
                    {"path", input.path},
                    {"sha256", input.sha256},
                    {"size", input.size}});
  }
  return list;
}

Json outputsJson(const std::vector<DataFile>& outputs) {
  Json list = Json::array();
  for (const DataFile& output : outputs) {
    list.push_back({{"name", output.name},
                    {"sha256", sha256(output.content)},
                    {"size", output.content.size()},
                    {"words", output.words}});
  }
  return list;
}

}  // namespace

std::string manifestJson(const std::vector<InputRecord>& inputs,
                         const std::vector<DataFile>& outputs, const VersionLookup& versionOf) {
  const Json manifest = {{"inputs", inputsJson(inputs, versionOf)},
                         {"outputs", outputsJson(outputs)}};
  return manifest.dump(2) + "\n";
}

}  // namespace tessarok::makedata
