#include "kit/kit.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
  // the same bytes on every system: no CR added before each newline on Windows
  platform::UseBinaryStdio();
  return bgr::kit::RunKit(argc, argv);
}
