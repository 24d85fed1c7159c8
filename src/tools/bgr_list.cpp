#include <cstdio>
#include <string>

#include "frame/report.h"
#include "frame/text.h"
#include "geometry/geo_angle.h"
#include "tools/commands.h"
#include "tools/tag_stream.h"

namespace bgr {
namespace {

int ListBgr(std::string_view name, std::int32_t vmin, std::int32_t vmax, std::int32_t pv) {
  std::int32_t node = 0;
  int result = 1;
  double west = 99999999.0, south = 99999999.0, east = -99999999.0, north = -99999999.0;
  Stream source = WrapFileOpen(name, "rb");
  if (!source) {
    result = 0;
    Report("BgrList source file '%s' not found", name);
  }
  if (vmin == -1) {
    vmin = 0;
    vmax = 9999;
  } else if (vmax == -1) {
    vmax = vmin;
  }
  std::FILE* in = source.get();
  std::string tag;
  while (ScanTag(tag, in, nullptr, pv)) {
    const char* t = tag.c_str();
    if (tag == "<orgn>") {
      std::printf("%s ", t);
      double lat = CopyDouble(in, nullptr, 0.0, pv);
      double lon = CopyDouble(in, nullptr, 0.0, pv);
      CopyDouble(in, nullptr, 0.0, pv);
      CopyLong(in, nullptr, 0, 1, false, pv);
      GeoAngle a;
      a.SetLatitude(lat);
      std::printf(" (%s", a.Format().c_str());
      a.SetLongitude(lon);
      std::printf(" %s)\n", a.Format().c_str());
    } else if (tag == "<vloc>") {
      if (vmin <= node && node <= vmax) {
        std::printf("%s (%d)", t, node);
        double x = CopyDouble(in, nullptr, 0.0, pv);
        CopyDouble(in, nullptr, 0.0, pv);
        double z = CopyDouble(in, nullptr, 0.0, pv);
        std::printf("\n");
        if (west > x) west = x;
        if (east < x) east = x;
        if (south > z) south = z;
        if (north < z) north = z;
      }
      node = WrapAdd(node, 1);
    } else if (tag == "<edge>") {
      std::printf("%s ", t);
      CopyLong(in, nullptr, 0, 1, false, pv);
      CopyLong(in, nullptr, 0, 1, false, pv);
      std::printf("\n");
    } else if (tag == "<type>") {
      std::printf("%s ", t);
      CopyLong(in, nullptr, 0, 1, false, pv);
      std::printf("\n");
    } else if (tag == "<thck>") {
      std::printf("%s ", t);
      std::int32_t word = CopyLong(in, nullptr, 0, 65536, true, pv);
      std::int32_t flags = word & 0xFFFF;
      std::int32_t code = word / 65536;
      std::printf("%d %dft sp=%02X", code, ((code - 16840) * 50) / 128, static_cast<unsigned>(flags));
      std::printf("\n");
    } else if (vmax == 9999) {
      std::fputs(t, stdout);
      std::putc('\n', stdout);
    }
  }
  std::printf("WS= %lf %lf, EN= %lf %lf\n", west, south, east, north);
  WrapFileClose(source);
  return result;
}

}  // namespace

int BgrList(std::string_view name, std::int32_t vmin, std::int32_t vmax, std::int32_t printValues) {
  if (HasExtension(name, "tms")) return TmsList(name);
  return ListBgr(name, vmin, vmax, printValues);
}

int BgrGraph(std::string_view, std::int32_t, std::int32_t) {
  std::printf("TEXTURESHOW_usage - not implemented\n");
  return 1;
}

}  // namespace bgr
