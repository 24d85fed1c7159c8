// A small TMS file composed from its layout: three tiles, a polygon, a refused
// polygon's section, two light records and an empty section.
#pragma once

#include <string>

#include "support/bgr_builder.h"

namespace bgrtest {

inline std::string SampleBytes() {
  Bytes b;
  b.Tag("<bgno>").Tag("<orgn>").Double(1).Double(2).Double(0).Long(1);
  b.Tag("<tlxz>").Long(8).Long(8).Tag("<feet>").Float(500).Tag("<lowl>").Double(-100).Double(0).Double(-200);
  b.Tag("<tile>").Tag("<bgno>").Tag("<indx>").Long(0).Long(0);
  b.Tag("<pave>").Long(96).Long(20).Long(0x10000).Long(2).Long(0);
  b.Long(3).Long(2560).Long(0).Long(5120).Long(0).Long(0).Long(0).Long(256).Long(0).Long(0);
  b.Long(5).Long(3).Long(0).Long(0xFFFF).Long(0).Long(0).Long(0).Long(1).Long(2).Long(0);
  b.Tag("<edmk>").Long(60).Long(20).Long(0x10000).Long(2).Long(0);
  b.Long(3).Long(2560).Long(0).Long(5120).Long(0).Long(0).Long(0).Long(256).Long(0).Long(0).Long(0);
  b.Tag("<lite>").Long(48);
  b.Long(1).Long(3).Float(2).Float(-2);
  b.Long(2).Long(3).Float(2).Float(0).Float(-2).Float(2).Float(7.5f);
  b.Long(0);
  b.Tag("<endo>");
  b.Tag("<tile>").Tag("<bgno>").Tag("<indx>").Long(1).Long(0).Tag("<endo>");
  b.Tag("<tile>").Tag("<bgno>").Tag("<indx>").Long(2).Long(0);
  b.Tag("<pave>").Long(24).Long(20).Long(0x10000).Long(2).Long(0).Long(0).Long(0).Tag("<endo>");
  b.Tag("<endo>");
  return b.data;
}

}  // namespace bgrtest
