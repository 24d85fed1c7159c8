// Listing TMS files, run as a user runs it.
#include <gtest/gtest.h>

#include <cstdio>

#include "cli/cli_case.h"
#include "support/tms_sample.h"

namespace bgrtest {
namespace {

// The listing's last line: where the reader stopped and the file's length.
std::string Tail(std::size_t tell, std::size_t length) {
  char text[48];
  std::snprintf(text, sizeof text, "Tell= %08zX, len= %08zX\n", tell, length);
  return text;
}

std::string Head() {
  return "<orgn> (0 0'01.0000\"N 0 0'02.0000\"E)\n<tlxz> 8 8\n<feet> 1140457472 (0x43fa0000 500.000000)\n"
         "<lowl> -100.000000 0.000000 -200.000000\n";
}

std::vector<CliCase> Cases() {
  std::string sample = SampleBytes();
  // the reader stops in front of the closing <endo>
  std::string tail = Tail(sample.size() - 7, sample.size());
  std::string listing = Head() +
                        "\n<indx> 0 0\n<pave> 3\n  0: 2560 0 5120 (10 0 20 ft)\n  1: 0 0 0 (0 0 0 ft)\n"
                        "  2: 256 0 0 (1 0 0 ft)\n"
                        "<lite> 1, type 3, step_ft 0.000000\n  0: 512 0 -512 (2 0 -2 ft)\n"
                        "<lite> 2, type 3, step_ft 7.500000\n  0: 512 0 0 (2 0 0 ft)\n  1: -512 0 512 (-2 0 2 ft)\n"
                        "\n<indx> 1 0\n\n<indx> 2 0\nRange X: -512 2560, Z: -512 5120\n" +
                        tail;
  std::vector<CliCase> cases;
  cases.push_back({"a tms file lists its tiles", {"s.tms"}, {{"s.tms", sample}}, listing});
  cases.push_back({"the extension test ignores case", {"-ls", "S.TMS"}, {{"s.tms", sample}}, listing});
  cases.push_back({"a missing tms file is no failure and prints nothing", {"none.tms"}, {}, ""});
  Bytes empty;
  empty.Tag("<bgno>").Tag("<orgn>").Double(1).Double(2).Double(0).Long(1);
  empty.Tag("<tlxz>").Long(8).Long(8).Tag("<feet>").Float(500).Tag("<lowl>").Double(-100).Double(0).Double(-200);
  empty.Tag("<tile>").Tag("<bgno>").Tag("<indx>").Long(0).Long(0).Tag("<endo>").Tag("<endo>");
  cases.push_back({"a file with no points keeps the start range", {"e.tms"}, {{"e.tms", empty.data}},
                   Head() + "\n<indx> 0 0\nRange X: 9999999 -9999999, Z: 9999999 -9999999\n" +
                       Tail(empty.data.size() - 7, empty.data.size())});
  // cut behind the vertex count of the first polygon: the short reads leave the
  // vertex numbers as they were (0), and the walk ends at the end of the file
  std::string cut = sample.substr(0, sample.find(std::string("\x05\0\0\0\x03\0\0\0", 8)) + 12);
  std::string vertex = "  0: 2560 0 5120 (10 0 20 ft)\n";
  cases.push_back({"a file cut inside a polygon ends the listing", {"c.tms"}, {{"c.tms", cut}},
                   Head() + "\n<indx> 0 0\n<pave> 3\n" + vertex + vertex + vertex +
                       "Range X: 2560 2560, Z: 5120 5120\n" + Tail(cut.size(), cut.size())});
  // a word cut by the end of the file is given back four bytes behind where the
  // read left the stream: the listing ends 4 bytes before the end
  Bytes cutWord;
  cutWord.Tag("<bgno>").Tag("<tile>").Tag("<bgno>").Tag("<indx>").Long(0).Long(1).Tag("<pave>");
  cases.push_back({"a section cut behind its tag gives its last word back", {"w.tms"}, {{"w.tms", cutWord.data}},
                   "<orgn> (0 0'00.0000\"N 0 0'00.0000\"E)\n<tlxz> 8 8\n<feet> 1148846080 (0x447a0000 1000.000000)\n"
                   "<lowl> 0.000000 0.000000 0.000000\n\n<indx> 0 1\n"
                   "Range X: 9999999 -9999999, Z: 9999999 -9999999\nTell= 00000027, len= 0000002B\n"});
  return cases;
}

CLI_CASE_SUITE(TmsListCli, Cases());

}  // namespace
}  // namespace bgrtest
