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

void RunCliCase(const CliCase& c);

inline std::ostream& operator<<(std::ostream& os, const CliCase& c) { return os << c.name; }

std::string CaseName(const CliCase& c);

}  // namespace bgrtest
