// modelref: records of referenced models on the command line.
#include "src/command_line.h"

int main(int argc, char** argv) { return modelref::run(argc, argv); }
