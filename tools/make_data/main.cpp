// Makes the read-only word data of Tessarok from the word lists of Debian's packages hunspell-ru,
// aspell-ru and scowl and from the lists written by hand. Exit status: 0 done, 1 the data could not
// be written, 2 a wrong command line or an input that cannot be used.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "FileSetWriter.h"
#include "InputError.h"
#include "InputLedger.h"
#include "Manifest.h"
#include "PackageVersion.h"
#include "WordData.h"

namespace {

using namespace tessarok::makedata;

constexpr int kDone = 0;
constexpr int kCannotWrite = 1;
constexpr int kBadInput = 2;

struct Options {
  SourcePaths sources{"/usr/share/hunspell/ru_RU.aff", "/usr/share/hunspell/ru_RU.dic",
                      "/usr/lib/aspell/ru_affix.dat",  "/usr/share/aspell/ru.cwl.gz",
                      "/usr/share/dict/scowl",         "tools/data"};
  std::filesystem::path output = "Resources";
  NgramFloors floors;
  std::filesystem::path report;
  bool quiet = false;
};

void declareOptions(CLI::App& app, Options& options) {
  const auto path = [&app](const char* name, std::filesystem::path& target, const char* help) {
    app.add_option(name, target, help)->capture_default_str();
  };
  path("output", options.output, "Directory for the data files");
  path("--lists", options.sources.lists, "Directory of the lists written by hand");
  path("--hunspell-affixes", options.sources.hunspellAffixes, "Russian affix file of hunspell");
  path("--hunspell-words", options.sources.hunspellWords, "Russian dictionary of hunspell");
  path("--aspell-affixes", options.sources.aspellAffixes, "Russian affix file of aspell");
  path("--aspell-words", options.sources.aspellWords, "Russian word list of aspell (.cwl.gz)");
  path("--scowl", options.sources.scowl, "Directory of the SCOWL lists");
  path("--report", options.report, "Write what was dropped, and why, to this file");
  const auto floor = [&app](const char* name, double& target, const char* help) {
    app.add_option(name, target, help)->capture_default_str();
  };
  floor("--english-groups", options.floors.english.plain, "Least weight of English letter groups");
  floor("--english-edges", options.floors.english.marked, "The same, with the word's ends");
  floor("--russian-groups", options.floors.russian.plain, "Least weight of Russian letter groups");
  floor("--russian-edges", options.floors.russian.marked, "The same, with the word's ends");
  app.add_flag("-q,--quiet", options.quiet, "Print nothing but errors");
}

void writeAll(const Options& options, const std::vector<DataFile>& files,
              const std::string& manifest) {
  FileSetWriter writer(options.output);
  for (const DataFile& file : files)
    writer.stage(file.name, file.content);
  // Last, so that data next to a manifest that fits them are complete.
  writer.stage("MANIFEST.json", manifest);
  writer.commit();
}

void writeReport(const Options& options, const std::string& report) {
  if (options.report.empty()) return;
  FileSetWriter writer(options.report.parent_path().empty() ? "." : options.report.parent_path());
  writer.stage(options.report.filename().string(), report);
  writer.commit();
}

void printSummary(const Options& options, const std::vector<DataFile>& files) {
  for (const DataFile& file : files) {
    std::cout << (options.output / file.name).string() << ": " << file.words << "\n";
  }
}

int complain(const std::string& what, int status) {
  std::cerr << "tessarok-make-data: " << what << "\n";
  return status;
}

int run(const Options& options) {
  try {
    InputLedger ledger;
    std::string report;
    const std::vector<DataFile> files =
        makeWordData(options.sources, options.floors, ledger, report);
    writeReport(options, report);
    writeAll(options, files, manifestJson(ledger.records(), files, packageVersion));
    if (!options.quiet) printSummary(options, files);
    return kDone;
  } catch (const InputError& error) {
    return complain(error.what(), kBadInput);
  } catch (const std::exception& error) {
    return complain(error.what(), kCannotWrite);
  }
}

}  // namespace

int main(int argc, char** argv) {
  // A file that grows beyond the user's limit is an error like a full disk, and not the death that
  // would leave temporary files behind.
  std::signal(SIGXFSZ, SIG_IGN);

  Options options;
  CLI::App app("Makes the word data of Tessarok", "tessarok-make-data");
  declareOptions(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kBadInput;
  }
  return run(options);
}
