#include "kit/kit.h"

int main(int argc, char** argv) { return bgr::kit::RunKit(argc, argv); }
