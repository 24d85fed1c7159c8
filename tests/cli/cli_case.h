// End-to-end cases as data: arguments, files made before the run, and what the
// run must leave: standard output, report lines, exit status and files.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace bgrtest {

using FileList = std::vector<std::pair<std::string, std::string>>;

struct CliCase {
  std::string name;
  std::vector<std::string> args;
  FileList files;
  std::string out;                  // standard output between command line and TIME line
  int exit = 1;                     // exit status as the shell sees it
  std::vector<std::string> report;  // report lines between command line and TIME line
  FileList expectFiles;             // exact content after the run
  std::vector<std::string> absent;  // files that must not exist after the run
  bool timeLine = true;             // false for runs stopped early
  std::string err;                  // standard error, our warnings
};

// A run that fails with exit 0: its ERROR line on the console and, behind
// 'before', in the report; 'keep' are files as they must stay.
inline CliCase Failing(std::string name, std::vector<std::string> args, FileList files, const std::string& error,
                       std::vector<std::string> before = {}, FileList keep = {}, std::vector<std::string> absent = {}) {
  before.push_back("ERROR: " + error);
  return {std::move(name), std::move(args), std::move(files), "ERROR: " + error + "\n", 0, std::move(before),
          std::move(keep), std::move(absent)};
}
// The report line of an output that can't be opened where it must stand.
inline std::string NotWritten(const std::string& name) { return "INFO: WrapFileOpen(" + name + ", [00] wb) failed"; }
// The report line of a file that can't be opened for reading.
inline std::string NotOpened(const std::string& name) { return "INFO: WrapFileOpen(" + name + ", [00] rb) failed"; }

// The case with what standard error must say.
inline CliCase Says(CliCase c, std::string err) {
  c.err = std::move(err);
  return c;
}
// Standard error of a command whose source doesn't exist.
inline std::string NoSuchSource(const std::string& name) {
  return "bgrtool: '" + name + "': No such file or directory\n";
}

void RunCliCase(const CliCase& c);

inline std::ostream& operator<<(std::ostream& os, const CliCase& c) { return os << c.name; }

std::string CaseName(const CliCase& c);

}  // namespace bgrtest

// A table of cases as one parameterised suite, each case named by its name.
#define CLI_CASE_SUITE(Suite, cases)                                     \
  class Suite : public ::testing::TestWithParam<CliCase> {};            \
  TEST_P(Suite, Runs) { RunCliCase(GetParam()); }                       \
  INSTANTIATE_TEST_SUITE_P(Cases, Suite, ::testing::ValuesIn(cases),    \
                           [](const auto& info) { return CaseName(info.param); })
