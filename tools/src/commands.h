// The commands, one file each. A command adds itself to the program with its options and examples; what it gives is the
// exit code.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>

namespace modelref {

/// What the command line asks for; set while it is being read.
using Action = std::function<int()>;

void addImport(CLI::App& program, Action& action);
void addTree(CLI::App& program, Action& action);
void addInfo(CLI::App& program, Action& action);
void addShow(CLI::App& program, Action& action);
void addDiff(CLI::App& program, Action& action);
void addValidate(CLI::App& program, Action& action);
void addGraph(CLI::App& program, Action& action);

/// The whole program: reads the command line, runs what it asks for and gives the exit code.
int run(int argc, char const* const* argv);

}  // namespace modelref
