#include "app/dispatcher.h"

#include <exception>
#include <span>
#include <string>
#include <string_view>

#include "frame/options.h"
#include "frame/run_context.h"
#include "platform/platform.h"
#include "tools/commands.h"

namespace bgr {
namespace {

using Names = std::span<const char* const>;

struct CommandRow {
  Mode mode;
  int fileCount;
  int (*run)(RunContext&, const Settings&, Names);
};

// Every command, with the number of file names its mode needs.
constexpr CommandRow kCommands[] = {
    {Mode::List, 1, [](RunContext& c, const Settings& s, Names f) { return BgrList(c, s, f[0]); }},
    {Mode::Move, 2, [](RunContext& c, const Settings& s, Names f) { return BgrMove(c, s, f[0], f[1]); }},
    {Mode::DeleteEdges, 2,
     [](RunContext& c, const Settings& s, Names f) { return BgrDeleteEdges(c, s, f[0], f[1]); }},
    {Mode::Merge, 2, [](RunContext& c, const Settings&, Names f) { return BgrMerge(c, f[0], f[1]); }},
    {Mode::Graph, 1, [](RunContext& c, const Settings&, Names f) { return BgrGraph(c, f[0]); }},
    {Mode::TxpExport, 1, [](RunContext& c, const Settings& s, Names f) { return BgrTxp(c, s, f[0]); }},
    {Mode::TxdExport, 1, [](RunContext& c, const Settings&, Names f) { return BgrTxd(c, f[0]); }},
    {Mode::Purge, 1, [](RunContext& c, const Settings&, Names f) { return BgrPurge(c, f[0]); }},
    {Mode::EditScript, 1,
     [](RunContext& c, const Settings& s, Names f) { return BgrEditScript(c, f[0], s.textName); }},
    {Mode::Script, 0, [](RunContext& c, const Settings& s, Names) { return RunScript(c, s); }},
    {Mode::TmsGeneration, 1, [](RunContext& c, const Settings&, Names f) { return BgrTms(c, f[0]); }},
};

}  // namespace

int Dispatch(RunContext& ctx, int argc, const char* const* argv) {
  Settings settings;
  int i = 1;
  while (i < argc && ScanOption(argv[i], settings)) ++i;
  int names = argc - i;
  for (const CommandRow& row : kCommands) {
    if (row.mode == settings.mode && row.fileCount == names) {
      return row.run(ctx, settings, Names(argv + i, static_cast<std::size_t>(names)));
    }
  }
  ctx.console().Write(kUsageText);
  return -1;
}

int RunBgrtool(int argc, const char* const* argv, OutputSink& console, OutputSink& diagnostics) {
  // --help and --version alone run no command and leave report.txt alone; they
  // give 1, this program's "done". A file of that name is still listed.
  if (argc == 2 && argv[1] && platform::KindOf(argv[1]) == platform::PathKind::kMissing) {
    std::string_view only = argv[1];
    if (only == "--help" || only == "--version") {
      console.Write(only == "--help" ? kHelpText : std::string("bgrtool") + kVersion + "\n");
      return 1;
    }
  }
  RunContext ctx(console, diagnostics);
  ctx.ReportStart(argc, argv, kVersion, true, false);
  try {
    int result = Dispatch(ctx, argc, argv);
    ctx.ReportEnd();
    return result;
  } catch (const FatalStop& stop) {
    // a fatal stop ends the run as a success would, without the TIME line
    ctx.ReportFatalLines(stop);
    return 1;
  } catch (const std::exception& e) {
    ctx.Report("bgrtool stopped: %s", e.what());
    return 0;
  }
}

}  // namespace bgr
