#include <nlohmann/json.hpp>

#include "Manifest.h"
#include "Sha256.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

nlohmann::json parsedManifest() {
  const std::vector<InputRecord> inputs{{"scowl", "/usr/share/x", "12ab", 7},
                                        {"unknown", "/y", "34cd", 0},
                                        {kOwnLists, "add_en.txt", "56ef", 1}};
  const std::vector<DataFile> outputs{{"dict_en.txt", "a\nab\n", 2}};
  return nlohmann::json::parse(
      manifestJson(inputs, outputs, [](const std::string& package) -> std::optional<std::string> {
        if (package == "scowl") return "2020-1";
        return std::nullopt;
      }));
}

TEST(Manifest, NamesEveryInput) {
  const nlohmann::json inputs = parsedManifest()["inputs"];
  ASSERT_EQ(inputs.size(), 3U);
  EXPECT_EQ(inputs[0]["package"], "scowl");
  EXPECT_EQ(inputs[0]["version"], "2020-1");
  EXPECT_EQ(inputs[0]["path"], "/usr/share/x");
  EXPECT_EQ(inputs[0]["sha256"], "12ab");
  EXPECT_EQ(inputs[0]["size"], 7);
  EXPECT_TRUE(inputs[1]["version"].is_null());
  EXPECT_TRUE(inputs[2]["version"].is_null());
}

TEST(Manifest, DescribesEveryOutput) {
  const nlohmann::json outputs = parsedManifest()["outputs"];
  ASSERT_EQ(outputs.size(), 1U);
  EXPECT_EQ(outputs[0]["name"], "dict_en.txt");
  EXPECT_EQ(outputs[0]["size"], 5);
  EXPECT_EQ(outputs[0]["words"], 2);
  EXPECT_EQ(outputs[0]["sha256"], sha256("a\nab\n"));
}

}  // namespace
}  // namespace tessarok::makedata::test
