#include "kit/kit.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "frame/options.h"

namespace bgr::kit {

std::vector<Subcommand> Subcommands() {
  return {
      {"makedb", "build the airport database (DBD and dbt) from a CSV of airports", SetupMakeDb},
      {"render", "draw a network, its PLY companion and its tiles as SVG or PNG", SetupRender},
      {"check", "find what is wrong with a network and its PLY companion before -tm does", SetupCheck},
      {"osm", "airport scripts and an airports table from OpenStreetMap data (.osm.pbf, .osm)", SetupOsm},
      {"runways", "RWY lines of an airport script from the OurAirports runways table", SetupRunways},
      {"view", "write one HTML page to pan and zoom a network, its tiles and check's findings", SetupView},
  };
}

int RunKit(int argc, const char* const* argv) {
  CLI::App app{"bgrkit: companion tools for bgrtool's airport networks"};
  app.name("bgrkit");
  app.require_subcommand(0, 1);
  app.set_version_flag("--version", std::string("bgrkit") + kVersion);
  // a path that begins with a slash is a file, on Windows too, not an option
  app.allow_windows_style_options(false);
  std::function<int()> work;
  std::vector<std::pair<CLI::App*, std::function<int()>>> commands;
  for (const Subcommand& sub : Subcommands()) {
    CLI::App* command = app.add_subcommand(sub.name, sub.summary);
    commands.emplace_back(command, sub.setup(*command));
  }
  CLI::App* help = app.add_subcommand("help", "show this help, or a subcommand's: bgrkit help SUB");
  std::string topic;
  help->add_option("subcommand", topic, "the subcommand to explain");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e) == 0 ? kDone : kBadUsage;
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e) == 0 ? kDone : kBadUsage;
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e) == 0 ? kDone : kBadUsage;
  } catch (const CLI::ParseError& e) {
    app.exit(e);
    return kBadUsage;
  }
  if (help->parsed() || app.get_subcommands().empty()) {
    if (topic.empty()) {
      std::cout << app.get_formatter()->make_help(&app, "bgrkit", CLI::AppFormatMode::Normal);
      return app.get_subcommands().empty() && !help->parsed() ? kBadUsage : kDone;
    }
    for (auto& [command, run] : commands) {
      if (command->get_name() == topic) {
        std::cout << command->help("bgrkit");
        return kDone;
      }
    }
    std::cerr << "bgrkit: no subcommand '" << topic << "'; see bgrkit help\n";
    return kBadUsage;
  }
  for (auto& [command, run] : commands) {
    if (command->parsed()) return run();
  }
  return kBadUsage;
}

}  // namespace bgr::kit
