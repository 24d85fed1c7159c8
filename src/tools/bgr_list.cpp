#include <charconv>
#include <string>

#include "formats/bgr_file.h"
#include "formats/network_content.h"
#include "formats/tag_stream.h"
#include "frame/file_access.h"
#include "frame/int32_math.h"
#include "frame/options.h"
#include "frame/run_context.h"
#include "frame/text.h"
#include "geometry/geo_angle.h"
#include "tools/commands.h"

namespace bgr {
namespace {

enum class Tag { kOther, kOrgn, kVloc, kEdge, kType, kThck };

// The listing looks at every tag of files of many megabytes: one length test
// sends most of them on at once.
Tag Classify(const std::string& tag) {
  if (tag.size() != 6) return Tag::kOther;
  if (tag == "<vloc>") return Tag::kVloc;
  if (tag == "<edge>") return Tag::kEdge;
  if (tag == "<type>") return Tag::kType;
  if (tag == "<thck>") return Tag::kThck;
  if (tag == "<orgn>") return Tag::kOrgn;
  return Tag::kOther;
}

class BgrLister {
 public:
  BgrLister(RunContext& ctx, const Settings& s, std::FILE* in)
      : out_(ctx.console()), tags_(ctx.console(), in, nullptr, s.printValues), nodes_(SelectedNodes(s)) {}

  void Run() {
    std::string tag;
    while (tags_.ScanTag(tag)) {
      switch (Classify(tag)) {
        case Tag::kOrgn:
          Origin(tag);
          break;
        case Tag::kVloc:
          Node(tag);
          break;
        case Tag::kEdge:
          Tagged(tag, 2);
          break;
        case Tag::kType:
          Tagged(tag, 1);
          break;
        case Tag::kThck:
          Thickness(tag);
          break;
        case Tag::kOther:
          if (nodes_.last == kLastListedNode) {
            PutTag(tag);
            out_.Put('\n');
          }
          break;
      }
    }
    out_.Printf("WS= %lf %lf, EN= %lf %lf\n", west_, south_, east_, north_);
  }

  const TagStream& tags() const { return tags_; }

 private:
  // A tag as "%s" shows it: up to a zero byte.
  void PutTag(const std::string& tag) { out_.Write(tag.c_str()); }
  void PutLong(std::int32_t v) {
    char text[16];
    out_.Write(std::string_view(text, static_cast<std::size_t>(std::to_chars(text, text + sizeof text, v).ptr - text)));
  }

  void Origin(const std::string& tag) {
    out_.Printf("%s ", tag.c_str());
    double lat = tags_.CopyDouble(0.0);
    double lon = tags_.CopyDouble(0.0);
    tags_.CopyDouble(0.0);
    tags_.CopyLong(0);
    GeoAngle a;
    a.SetLatitude(lat);
    out_.Printf(" (%s", a.Format().c_str());
    a.SetLongitude(lon);
    out_.Printf(" %s)\n", a.Format().c_str());
  }

  void Node(const std::string& tag) {
    if (nodes_.Holds(node_)) {
      PutTag(tag);
      out_.Write(" (");
      PutLong(node_);
      out_.Put(')');
      double x = tags_.CopyDouble(0.0);
      tags_.CopyDouble(0.0);
      double z = tags_.CopyDouble(0.0);
      out_.Put('\n');
      if (west_ > x) west_ = x;
      if (east_ < x) east_ = x;
      if (south_ > z) south_ = z;
      if (north_ < z) north_ = z;
    }
    node_ = WrapAdd(node_, 1);
  }

  void Tagged(const std::string& tag, int longs) {
    PutTag(tag);
    out_.Put(' ');
    for (int i = 0; i < longs; ++i) tags_.CopyLong(0);
    out_.Put('\n');
  }

  void Thickness(const std::string& tag) {
    PutTag(tag);
    out_.Put(' ');
    std::int32_t word = tags_.CopyLong(0, 65536, true);
    std::int32_t flags = word & 0xFFFF;
    std::int32_t code = word / 65536;
    PutLong(code);
    out_.Put(' ');
    PutLong(DecodeWidth(code));
    out_.Printf("ft sp=%02X\n", static_cast<unsigned>(flags));
  }

  OutputSink& out_;
  TagStream tags_;
  NodeRange nodes_;
  std::int32_t node_ = 0;
  double west_ = 99999999.0, south_ = 99999999.0, east_ = -99999999.0, north_ = -99999999.0;
};

}  // namespace

int BgrList(RunContext& ctx, const Settings& settings, std::string_view name) {
  if (HasExtension(name, "tms")) return TmsList(ctx, name);
  int result = 1;
  Stream source = WrapFileOpen(ctx, name, "rb");
  if (!source) {
    result = 0;
    ctx.Report("BgrList source file '%s' not found", name);
  }
  TellWhatStandsInstead(ctx, name);  // also a file that opens but holds no network
  BgrLister lister(ctx, settings, source.get());
  lister.Run();
  lister.tags().WarnIfCut(ctx, name);
  return result;
}

int BgrGraph(RunContext& ctx, std::string_view) {
  ctx.console().Write("TEXTURESHOW_usage - not implemented\n");
  return 1;
}

}  // namespace bgr
