#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "kit/png.h"
#include "platform/platform.h"

namespace bgr::kit {
namespace {

// The SVG rasteriser, found at run time: librsvg, drawing on a cairo surface.
struct Rasteriser {
  using NewFromData = void* (*)(const unsigned char*, unsigned long, void**);
  using Size = int (*)(void*, double*, double*);
  struct Rect {
    double x, y, width, height;
  };
  using RenderDocument = int (*)(void*, cairo_t*, const Rect*, void**);
  using Unref = void (*)(void*);

  platform::SharedLibrary library{"librsvg-2.so.2"};
  NewFromData newFromData = reinterpret_cast<NewFromData>(library.Symbol("rsvg_handle_new_from_data"));
  Size size = reinterpret_cast<Size>(library.Symbol("rsvg_handle_get_intrinsic_size_in_pixels"));
  RenderDocument render = reinterpret_cast<RenderDocument>(library.Symbol("rsvg_handle_render_document"));
  Unref unref = reinterpret_cast<Unref>(library.Symbol("g_object_unref"));
  bool usable() const { return newFromData && size && render && unref; }
};

cairo_status_t WriteChunk(void* closure, const unsigned char* data, unsigned int length) {
  return std::fwrite(data, 1, length, static_cast<std::FILE*>(closure)) == length ? CAIRO_STATUS_SUCCESS
                                                                                   : CAIRO_STATUS_WRITE_ERROR;
}

}  // namespace

const char* const kPngNote = "A PNG is made of the SVG by librsvg (package librsvg2-2), found when it is needed.";

std::string WritePng(const std::string& svg, std::FILE* out) {
  Rasteriser r;
  if (!r.usable()) return "a PNG needs the SVG rasteriser librsvg: install the package librsvg2-2, or write an .svg";
  void* handle = r.newFromData(reinterpret_cast<const unsigned char*>(svg.data()), svg.size(), nullptr);
  if (!handle) return "the rasteriser refused the picture";
  double w = 0, h = 0;
  r.size(handle, &w, &h);
  int pw = std::clamp(static_cast<int>(std::ceil(w)), 1, 32767), ph = std::clamp(static_cast<int>(std::ceil(h)), 1, 32767);
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pw, ph);
  cairo_t* cr = cairo_create(surface);
  Rasteriser::Rect viewport{0, 0, static_cast<double>(pw), static_cast<double>(ph)};
  bool drawn = r.render(handle, cr, &viewport, nullptr) != 0;
  cairo_destroy(cr);
  bool written = drawn && cairo_surface_write_to_png_stream(surface, WriteChunk, out) == CAIRO_STATUS_SUCCESS;
  cairo_surface_destroy(surface);
  r.unref(handle);
  if (!drawn) return "the rasteriser could not draw the picture";
  return written ? "" : "the PNG could not be written";
}

}  // namespace bgr::kit
