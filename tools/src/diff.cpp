// modelref diff: whether two records mean the same.
#include <boost/json.hpp>
#include <memory>

#include "commands.h"
#include "compare.h"
#include "console.h"
#include "record_file.h"

namespace modelref {

namespace {

struct Options {
    std::string before;
    std::string after;
    bool json = false;
    bool quiet = false;
};

std::string lineOf(Difference const& d) {
    std::string const path = d.path.empty() ? "/" : d.path;
    switch (d.kind) {
        case Difference::Kind::Added:
            return coloured(Colour::Green, "+ " + path + ": " + d.after);
        case Difference::Kind::Removed:
            return coloured(Colour::Red, "- " + path + ": " + d.before);
        case Difference::Kind::Moved:
            return coloured(Colour::Yellow, "> " + path + ": from " + d.before + " to " + d.after);
        default:
            return "~ " + path + ": " + coloured(Colour::Red, d.before) + " -> " + coloured(Colour::Green, d.after);
    }
}

int diff(Options const& options) {
    std::vector<Difference> const differences = compare(loadRecord(options.before), loadRecord(options.after));
    boost::json::array list;
    constexpr char const* kinds[] = {"added", "removed", "changed", "moved"};
    for (Difference const& d : differences) {
        if (options.json) {
            list.push_back(
                {{"kind", kinds[static_cast<int>(d.kind)]}, {"path", d.path}, {"old", d.before}, {"new", d.after}});
        } else if (!options.quiet) {
            printLine(lineOf(d));
        }
    }
    if (options.json) printJson(list);
    if (!options.quiet) note(differences.empty() ? "the same" : std::to_string(differences.size()) + " differences");
    return differences.empty() ? 0 : 1;
}

}  // namespace

void addDiff(CLI::App& program, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = program.add_subcommand("diff", "Tell what differs between two records by meaning");
    command->add_option("OLD", options->before, "A record")->required();
    command->add_option("NEW", options->after, "Another one")->required();
    command->add_flag("--json", options->json, "Print JSON");
    command->add_flag("-q,--quiet", options->quiet, "Only give the exit code");
    command->footer(
        "Ids don't count. Ports are matched by name, maps by key, sets by content, roots by interface or content,\n"
        "all else by position. Paths are those of OLD, and of NEW for what was added.\n"
        "Exit codes: 0 the same, 1 different, 2 a failure.\n\n"
        "Examples:\n"
        "  modelref diff old.record new.record\n"
        "  modelref diff -q old.record new.record || make outer-model");
    command->callback([options, &action] { action = [options] { return diff(*options); }; });
}

}  // namespace modelref
