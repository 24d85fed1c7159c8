#pragma once

#include <string>
#include <vector>

namespace bgrtest {

struct ToolRun {
  int exitStatus = -1;  // the process's exit status, 0..255
  std::string out;      // standard output
  std::string err;      // standard error
};

// Runs the built binary in 'dir', started by the bare name "bgrtool", so its
// report.txt lands in 'dir'.
// With a fileSizeLimit of 0 or more, no file can grow past that many bytes:
// a write beyond fails as on a full disk.
// With a failCall ("rename:2"), the fault library fails that call of the run.
ToolRun RunTool(const std::string& binary, const std::string& dir, const std::vector<std::string>& args,
                long fileSizeLimit = -1, const std::string& failCall = "");

// Report or console text with the banner's credit and the TIME value replaced:
// "<banner>" (the leading blank or line break stays) and "TIME= <t> sec".
std::string Normalise(const std::string& text);

}  // namespace bgrtest
