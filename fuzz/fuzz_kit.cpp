// bgrkit's check, render and view on hostile files. The first byte chooses what the
// rest is: a compact network with its PLY text (as the -tm target reads it),
// raw BGR bytes, or raw TMS bytes beside a small network.
#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "fuzz_common.h"
#include "kit/check.h"
#include "kit/render.h"
#include "kit/view.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  bgrfuzz::Run run;
  std::string bgr = bgrfuzz::WorkDir() + "/kit.bgr";
  std::string tms = bgrfuzz::WorkDir() + "/kit.TMS";
  std::string ply = bgrfuzz::WorkDir() + "/kit.PLY";
  std::remove(tms.c_str());
  std::remove(ply.c_str());
  bgrfuzz::Reader in{data + 1, size - 1};
  switch (data[0] % 3) {
    case 0: {
      bgrfuzz::WriteCompactNetwork(run, in, bgr);
      std::size_t rest = std::min(in.at, in.size);
      bgrfuzz::WriteInput("kit.PLY", in.data + rest, in.size - rest);
      break;
    }
    case 1:
      bgrfuzz::WriteInput("kit.bgr", in.data, in.size);
      break;
    default: {
      bgrfuzz::WriteCompactNetwork(run, in, bgr);
      std::size_t rest = std::min(in.at, in.size);
      bgrfuzz::WriteInput("kit.TMS", in.data + rest, in.size - rest);
      break;
    }
  }
  bgr::kit::CheckInput input;
  std::string error;
  bgr::kit::Findings findings;
  if (bgr::kit::LoadCheckInput(bgr, input, error)) {
    findings = bgr::kit::CheckAll(input);
    for (const auto& f : findings) (void)bgr::kit::FormatFinding(f);
  }
  bgr::kit::Scene scene;
  if (bgr::kit::LoadScene(data[0] % 3 == 2 ? tms : bgr, scene, error)) {
    bgr::kit::RenderOptions options;
    options.labels = true;
    (void)bgr::kit::DrawSvg(scene, options);
    // the page's scene must stay JSON whatever the files hold
    std::string page = bgr::kit::ViewPage(scene, findings, bgr::kit::ViewOptions{}, "", "");
    const std::string head = "id=\"scene\">";
    std::size_t from = page.find(head), to = page.find("</script>", from);
    if (from == std::string::npos || to == std::string::npos) std::abort();
    from += head.size();
    if (nlohmann::json::parse(page.substr(from, to - from), nullptr, false).is_discarded()) std::abort();
  }
  return 0;
}
