// The command line: what the program is called with, by command.
#pragma once

namespace modelref {

/// The whole program: reads the command line, runs the command that it asks for and gives the exit code.
int run(int argc, char const* const* argv);

}  // namespace modelref
