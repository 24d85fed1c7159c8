#include <cstdio>

#include "app/dispatcher.h"

int main(int argc, char** argv) {
  bgr::OutputSink console(stdout);
  bgr::OutputSink diagnostics(stderr, true);
  int result = bgr::RunBgrtool(argc, argv, console, diagnostics);
  console.Flush();
  return result;
}
