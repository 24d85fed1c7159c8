// The commands that the dispatcher can run; each returns 1 for done, 0 for failed.
#pragma once

#include <cstdint>
#include <string_view>

namespace bgr {

int BgrList(std::string_view name, std::int32_t vmin, std::int32_t vmax, std::int32_t printValues);
int TmsList(std::string_view name);
int BgrGraph(std::string_view name, std::int32_t vmin, std::int32_t vmax);

}  // namespace bgr
