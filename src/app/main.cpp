#include <cstdio>

#include "app/dispatcher.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
  platform::UseBinaryStdio();
  bgr::OutputSink console(stdout);
  bgr::OutputSink diagnostics(stderr, true);
  diagnostics.SetTerminal(platform::IsTerminal(stderr));
  int result = bgr::RunBgrtool(argc, argv, console, diagnostics);
  console.Flush();
  return result;
}
