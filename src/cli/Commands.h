#pragma once

#include <CLI/App.hpp>

// Each command adds its subcommand, options and action to the application.
namespace vx::cli {

void addPackCommand(CLI::App& app);
void addListCommand(CLI::App& app);
void addInfoCommand(CLI::App& app);
void addVerifyCommand(CLI::App& app);
void addExtractCommand(CLI::App& app);
void addCatCommand(CLI::App& app);
void addKeygenCommand(CLI::App& app);
void addSignCommand(CLI::App& app);
// diff tells the same from different by the exit status, which it sets in
// status when it ends without failing.
void addDiffCommand(CLI::App& app, int& status);
void addServeCommand(CLI::App& app);

}  // namespace vx::cli
