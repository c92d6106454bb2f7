// modelref validate: references within a record that point nowhere.
#include <boost/json.hpp>
#include <memory>

#include "checks.h"
#include "commands.h"
#include "console.h"
#include "record_file.h"

namespace modelref {

namespace {

struct Options {
    std::string record;
    bool json = false;
};

int validate(Options const& options) {
    Model const model = loadRecord(options.record);
    std::size_t count = 0;
    boost::json::array list;
    for (ModelElement const& element : model->getRoots()) {
        auto const root = ModelRefInfoRepo::ModelRefInfoRoot::cast(element);
        if (!root) continue;
        for (Finding const& finding : Checks(root).run()) {
            ++count;
            if (options.json) {
                list.push_back({{"path", finding.path}, {"message", finding.message}});
            } else {
                printLine(coloured(Colour::Yellow, finding.path) + ": " + finding.message);
            }
        }
    }
    if (options.json) printJson(list);
    note(options.record + ": " + (count == 0 ? "clean" : std::to_string(count) + " findings"));
    return count == 0 ? 0 : 1;
}

}  // namespace

void addValidate(CLI::App& program, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = program.add_subcommand("validate", "List references that point nowhere");
    command->add_option("RECORD", options->record, "A record")->required();
    command->add_flag("--json", options->json, "Print JSON");
    command->footer(
        "Looks at ports, port groups, functions, rates, parameters, types, states and data stores, which a\n"
        "record names by number or text.\n"
        "Exit codes: 0 clean, 1 findings, 2 a failure.\n\n"
        "Examples:\n"
        "  modelref validate plant.record\n"
        "  modelref validate plant.record --json | jq length");
    command->callback([options, &action] { action = [options] { return validate(*options); }; });
}

}  // namespace modelref
