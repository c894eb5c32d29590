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
void addServeCommand(CLI::App& app);

}  // namespace vx::cli
