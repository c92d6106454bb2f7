// The commands, one source file each: the options of a command, and the function that runs it and gives the exit code.
#pragma once

#include <cstddef>
#include <limits>
#include <string>

namespace modelref {

struct ImportOptions {
    std::string input;
    std::string output;
    bool json = false;
};
int runImport(ImportOptions const& options);

struct TreeOptions {
    std::string record;
    std::size_t depth = std::numeric_limits<std::size_t>::max();
    bool ids = false;
    bool json = false;
};
int runTree(TreeOptions const& options);

struct InfoOptions {
    std::string record;
    bool json = false;
};
int runInfo(InfoOptions const& options);

struct ShowOptions {
    std::string record;
    std::string path = "/";
    bool all = false;
    bool json = false;
};
int runShow(ShowOptions const& options);

struct DiffOptions {
    std::string before;
    std::string after;
    bool json = false;
    bool quiet = false;
};
int runDiff(DiffOptions const& options);

struct ValidateOptions {
    std::string record;
    bool json = false;
};
int runValidate(ValidateOptions const& options);

struct GraphOptions {
    std::string record;
    std::string kind = "ownership";
    std::string output;
    std::size_t depth = std::numeric_limits<std::size_t>::max();
};
int runGraph(GraphOptions const& options);

}  // namespace modelref
