// The commands that the dispatcher can run. Each takes the run's context first
// and returns 1 for done, 0 for failed; the reason of a failure is in the report.
#pragma once

#include <cstdint>
#include <string_view>

namespace bgr {

class RunContext;
struct Settings;

int BgrList(RunContext& ctx, const Settings& settings, std::string_view name);
int TmsList(RunContext& ctx, std::string_view name);
int BgrGraph(RunContext& ctx, std::string_view name);
int BgrMove(RunContext& ctx, const Settings& settings, std::string_view source, std::string_view destination);
int BgrDeleteEdges(RunContext& ctx, const Settings& settings, std::string_view source, std::string_view destination);
int BgrMerge(RunContext& ctx, std::string_view source, std::string_view destination);
int BgrPurge(RunContext& ctx, std::string_view name);
int BgrEditScript(RunContext& ctx, std::string_view file, std::string_view script);
int BgrTxd(RunContext& ctx, std::string_view file);
int BgrTxp(RunContext& ctx, const Settings& settings, std::string_view file);
int BgrTms(RunContext& ctx, std::string_view file);
int RunScript(RunContext& ctx, const Settings& settings);

}  // namespace bgr
