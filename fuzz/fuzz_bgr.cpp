// The BGR reader and the tag-walking listing on hostile bytes.
#include "formats/bgr_file.h"
#include "formats/taxiway_list.h"
#include "fuzz_common.h"
#include "tools/commands.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string path = bgrfuzz::WriteInput("in.bgr", data, size);
  bgr::BgrList(path, -1, -1, 1);
  bgr::BgrList(path, 2, 5, 0);
  bgr::BgrFile file;
  if (file.OpenRead(path)) {
    double a, b, c;
    std::int32_t i[6];
    file.ReadOrigin(&a, &b, &c);
    while (file.ReadNode(&a, &b, &c)) {
    }
    while (file.ReadEdge(&i[0], &i[1], &i[2], &i[3], &i[4], &i[5])) {
    }
  }
  file.Close();
  bgr::TaxiwayList list;
  list.Load(path, 0);
  list.Save(bgrfuzz::WorkDir() + "/out.bgr");
  return 0;
}
