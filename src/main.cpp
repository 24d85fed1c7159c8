#include "frame/dispatcher.h"

int main(int argc, char** argv) { return bgr::RunBgrtool(argc, argv); }
