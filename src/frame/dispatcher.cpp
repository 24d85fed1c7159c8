#include "frame/dispatcher.h"

#include <cstdio>
#include <span>

#include "frame/options.h"
#include "frame/report.h"
#include "tools/commands.h"

namespace bgr {
namespace {

using Names = std::span<const char* const>;

struct CommandRow {
  Mode mode;
  int fileCount;
  int (*run)(const Settings&, Names);
};

// The one place that knows all commands.
constexpr CommandRow kCommands[] = {
    {Mode::List, 1, [](const Settings& s, Names f) { return BgrList(f[0], s.vmin, s.vmax, s.printValues); }},
    {Mode::Move, 2,
     [](const Settings& s, Names f) { return BgrMove(f[0], f[1], s.north, s.east, s.vmin, s.vmax, s.printValues); }},
    {Mode::DeleteEdges, 2,
     [](const Settings& s, Names f) { return BgrDeleteEdges(f[0], f[1], s.vmin, s.vmax, s.printValues); }},
    {Mode::Merge, 2, [](const Settings&, Names f) { return BgrMerge(f[0], f[1]); }},
    {Mode::Graph, 1, [](const Settings& s, Names f) { return BgrGraph(f[0], s.vmin, s.vmax); }},
    {Mode::TxpExport, 1, [](const Settings& s, Names f) { return BgrTxp(f[0], s.txpLevel, s.printValues); }},
    {Mode::TxdExport, 1, [](const Settings&, Names f) { return BgrTxd(f[0]); }},
    {Mode::Purge, 1, [](const Settings&, Names f) { return BgrPurge(f[0]); }},
    {Mode::EditScript, 1, [](const Settings& s, Names f) { return BgrEditScript(f[0], s.textName); }},
};

}  // namespace

int Dispatch(int argc, const char* const* argv) {
  Settings settings;
  int i = 1;
  while (i < argc && ScanOption(argv[i], settings)) ++i;
  int names = argc - i;
  for (const CommandRow& row : kCommands) {
    if (row.mode == settings.mode && row.fileCount == names) {
      return row.run(settings, Names(argv + i, static_cast<std::size_t>(names)));
    }
  }
  std::fputs(kUsageText, stdout);
  return -1;
}

int RunBgrtool(int argc, const char* const* argv) {
  ReportStart(argc, argv, kVersion, true, false);
  int result = Dispatch(argc, argv);
  ReportEnd();
  return result;
}

}  // namespace bgr
