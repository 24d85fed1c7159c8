#include <cctype>
#include <charconv>
#include <cstdio>
#include <string>

#include "frame/report.h"
#include "frame/text.h"
#include "geometry/geo_angle.h"
#include "platform/platform.h"
#include "tools/commands.h"
#include "tools/tag_stream.h"

namespace bgr {
namespace {

// Console output without a format to parse per call: a listing prints a few
// lines for every record of files of many megabytes.
void Put(std::string_view text) {
  for (char c : text) platform::PutByte(c, stdout);
}
// A tag as "%s" shows it: up to a zero byte.
void PutTag(const std::string& tag) { Put(tag.c_str()); }
void PutLong(std::int32_t v) {
  char text[16];
  Put(std::string_view(text, static_cast<std::size_t>(std::to_chars(text, text + sizeof text, v).ptr - text)));
}

// "%02X"
void PutHex2(unsigned v) {
  char text[16];
  char* end = std::to_chars(text, text + sizeof text, v, 16).ptr;
  if (end - text < 2) Put("0");
  for (char* c = text; c < end; ++c) platform::PutByte(std::toupper(static_cast<unsigned char>(*c)), stdout);
}

enum class Tag { kOther, kOrgn, kVloc, kEdge, kType, kThck };

Tag Classify(const std::string& tag) {
  if (tag.size() != 6) return Tag::kOther;
  if (tag == "<vloc>") return Tag::kVloc;
  if (tag == "<edge>") return Tag::kEdge;
  if (tag == "<type>") return Tag::kType;
  if (tag == "<thck>") return Tag::kThck;
  if (tag == "<orgn>") return Tag::kOrgn;
  return Tag::kOther;
}

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
    Tag kind = Classify(tag);
    if (kind == Tag::kOrgn) {
      std::printf("%s ", tag.c_str());
      double lat = CopyDouble(in, nullptr, 0.0, pv);
      double lon = CopyDouble(in, nullptr, 0.0, pv);
      CopyDouble(in, nullptr, 0.0, pv);
      CopyLong(in, nullptr, 0, 1, false, pv);
      GeoAngle a;
      a.SetLatitude(lat);
      std::printf(" (%s", a.Format().c_str());
      a.SetLongitude(lon);
      std::printf(" %s)\n", a.Format().c_str());
    } else if (kind == Tag::kVloc) {
      if (vmin <= node && node <= vmax) {
        PutTag(tag);
        Put(" (");
        PutLong(node);
        Put(")");
        double x = CopyDouble(in, nullptr, 0.0, pv);
        CopyDouble(in, nullptr, 0.0, pv);
        double z = CopyDouble(in, nullptr, 0.0, pv);
        Put("\n");
        if (west > x) west = x;
        if (east < x) east = x;
        if (south > z) south = z;
        if (north < z) north = z;
      }
      node = WrapAdd(node, 1);
    } else if (kind == Tag::kEdge) {
      PutTag(tag);
      Put(" ");
      CopyLong(in, nullptr, 0, 1, false, pv);
      CopyLong(in, nullptr, 0, 1, false, pv);
      Put("\n");
    } else if (kind == Tag::kType) {
      PutTag(tag);
      Put(" ");
      CopyLong(in, nullptr, 0, 1, false, pv);
      Put("\n");
    } else if (kind == Tag::kThck) {
      PutTag(tag);
      Put(" ");
      std::int32_t word = CopyLong(in, nullptr, 0, 65536, true, pv);
      std::int32_t flags = word & 0xFFFF;
      std::int32_t code = word / 65536;
      PutLong(code);
      Put(" ");
      PutLong(((code - 16840) * 50) / 128);
      Put("ft sp=");
      PutHex2(static_cast<unsigned>(flags));
      Put("\n");
    } else if (vmax == 9999) {
      PutTag(tag);
      Put("\n");
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
