// modelref diff: compares two records by meaning.
#include <boost/json/value.hpp>

#include "commands.h"
#include "compare.h"
#include "console.h"
#include "record_file.h"

namespace modelref {

namespace {

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

}  // namespace

int runDiff(DiffOptions const& options) {
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

}  // namespace modelref
