// The command line of the program.
#pragma once

namespace modelref {

/// The whole program: parses the command line, runs the command and gives the exit code.
int run(int argc, char const* const* argv);

}  // namespace modelref
