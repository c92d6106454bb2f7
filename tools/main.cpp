// modelref: records of referenced models on the command line.
#include "src/commands.h"

int main(int argc, char** argv) { return modelref::run(argc, argv); }
