// The airport database reader on hostile DBD files (a header that lies, records
// of any size) with a dbt list from the input's tail.
#include <filesystem>

#include "fuzz_common.h"
#include "script/airport_database.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = [] {
    std::filesystem::create_directories(bgrfuzz::WorkDir() + "/DATABASE");
    std::filesystem::current_path(bgrfuzz::WorkDir());
    return true;
  }();
  (void)ready;
  // the dbt text is what stands behind the last "\n--\n", or a standard one
  std::string all(reinterpret_cast<const char*>(data), size);
  std::size_t cut = all.rfind("\n--\n");
  std::string dbt = cut == std::string::npos ? "aica,0,8,C\nalat,8,8,N\nalon,16,8,N\n" : all.substr(cut + 4);
  std::string dbd = cut == std::string::npos ? all : all.substr(0, cut);
  bgrfuzz::WriteInput("DATABASE/AIRPORT.DBD", reinterpret_cast<const std::uint8_t*>(dbd.data()), dbd.size());
  bgrfuzz::WriteInput("DATABASE/AIRPORT.dbt", reinterpret_cast<const std::uint8_t*>(dbt.data()), dbt.size());
  bgrfuzz::Run run;
  bgr::AirportDatabase db(run.ctx);
  for (double lat : {0.0, 100000.0, -300000.0}) {
    for (double lon : {0.0, 50000.0, 647990.0, 1295999.0}) {
      double a = lat, o = lon;
      std::string name;
      db.FindAirport(&a, &o, name);
      if (db.IsOpen() && db.NearestByIndex(lat, lon) != db.NearestByWalk(lat, lon)) __builtin_trap();
    }
  }
  return 0;
}
