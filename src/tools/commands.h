// The commands that the dispatcher can run; each returns 1 for done, 0 for failed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

namespace bgr {

int BgrList(std::string_view name, std::int32_t vmin, std::int32_t vmax, std::int32_t printValues);
int TmsList(std::string_view name);
int BgrGraph(std::string_view name, std::int32_t vmin, std::int32_t vmax);
int BgrMove(std::string_view source, std::string_view destination, double north, double east, std::int32_t vmin,
            std::int32_t vmax, std::int32_t printValues);
int BgrDeleteEdges(std::string_view source, std::string_view destination, std::int32_t first, std::int32_t second,
                   std::int32_t printValues);
int BgrMerge(std::string_view source, std::string_view destination);
int BgrPurge(std::string_view name);
int BgrEditScript(std::string_view file, std::string_view script);
int BgrReplaceEdges(std::string_view file, std::int32_t first, std::int32_t second, std::int32_t tolerance);
int BgrAlignNodes(std::string_view file, std::int32_t first, std::int32_t second, std::int32_t tolerance);
int BgrWidthEdges(std::string_view file, std::int32_t smallest, std::int32_t largest);
int BgrTxd(std::string_view file);
int BgrTxp(std::string_view file, std::int32_t level, std::int32_t printValues);
// A text and its terminating zero; a null stream writes nothing.
void WriteMarker(std::FILE* stream, std::string_view text);

}  // namespace bgr
