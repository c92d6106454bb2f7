#include "command_line.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <functional>
#include <memory>
#include <new>

#include "commands.h"
#include "console.h"
#include "failure.h"

namespace modelref {

namespace {

constexpr int kFailed = 2;

/// The command to run; set while the command line is parsed.
using Action = std::function<int()>;

/// The options of a command, which live as long as the parser. The command runs with them.
template <class Options>
Options& optionsOf(CLI::App& command, Action& action, int (*run)(Options const&)) {
    auto const options = std::make_shared<Options>();
    command.callback([options, &action, run] { action = [options, run] { return run(*options); }; });
    return *options;
}

void addImport(CLI::App& program, Action& action) {
    CLI::App* const command = program.add_subcommand("import", "Make a record of an FMU or a modelDescription.xml");
    ImportOptions& options = optionsOf(*command, action, runImport);
    command->add_option("MODEL", options.input, "An FMU, or the modelDescription.xml of one")->required();
    command->add_option("-o,--output", options.output, "Where the record goes")->required();
    command->add_flag("--json", options.json, "Print what was recorded as JSON");
    command->footer(
        "Every variable is recorded or listed as not placed.\n\n"
        "Examples:\n"
        "  modelref import plant.fmu -o plant.record\n"
        "  modelref import modelDescription.xml -o plant.record --json | jq .notPlaced");
}

void addTree(CLI::App& program, Action& action) {
    CLI::App* const command = program.add_subcommand("tree", "Print what owns what");
    TreeOptions& options = optionsOf(*command, action, runTree);
    command->add_option("RECORD", options.record, "A record")->required();
    command->add_option("-d,--depth", options.depth, "How many levels below the root")->check(CLI::NonNegativeNumber);
    command->add_flag("--ids", options.ids, "Print ids as well");
    command->add_flag("--json", options.json, "Print JSON");
    command->footer("Examples:\n  modelref tree plant.record\n  modelref tree plant.record --depth 1");
}

void addInfo(CLI::App& program, Action& action) {
    CLI::App* const command = program.add_subcommand("info", "Count elements, and the classes in use");
    InfoOptions& options = optionsOf(*command, action, runInfo);
    command->add_option("RECORD", options.record, "A record")->required();
    command->add_flag("--json", options.json, "Print JSON");
    command->footer("Examples:\n  modelref info plant.record\n  modelref info plant.record --json | jq .classes");
}

void addShow(CLI::App& program, Action& action) {
    CLI::App* const command = program.add_subcommand("show", "Print what stands at a path");
    ShowOptions& options = optionsOf(*command, action, runShow);
    command->add_option("RECORD", options.record, "A record")->required();
    command->add_option("PATH", options.path,
                        "Properties, positions or names, and keys of maps, as tree and validate print them:\n"
                        "/inports/0/rateInfos; / is the root");
    command->add_flag("--all", options.all, "Print properties that have their initial value as well");
    command->add_flag("--json", options.json, "Print JSON");
    command->footer(
        "In names and keys, ~1 stands for a slash, ~0 for a tilde and ~x0a for a control character; ~ is the empty "
        "key.\n"
        "Among several entries of one key a number follows, from 0. //1/ begins at the second root.\n\n"
        "Examples:\n"
        "  modelref show plant.record /inports/0\n"
        "  modelref show plant.record /inports/speed/rateInfos\n"
        "  modelref show plant.record /argumentParameters/entries/gain --json");
}

void addDiff(CLI::App& program, Action& action) {
    CLI::App* const command = program.add_subcommand("diff", "Tell what differs between two records by meaning");
    DiffOptions& options = optionsOf(*command, action, runDiff);
    command->add_option("OLD", options.before, "A record")->required();
    command->add_option("NEW", options.after, "Another one")->required();
    command->add_flag("--json", options.json, "Print JSON");
    command->add_flag("-q,--quiet", options.quiet, "Only give the exit code");
    command->footer(
        "Ids don't count. Ports are matched by name, maps by key, sets by content, roots by interface or content,\n"
        "all else by position. Paths are those of OLD, and of NEW for what was added.\n"
        "Exit codes: 0 the same, 1 different, 2 a failure.\n\n"
        "Examples:\n"
        "  modelref diff old.record new.record\n"
        "  modelref diff -q old.record new.record || make outer-model");
}

void addValidate(CLI::App& program, Action& action) {
    CLI::App* const command = program.add_subcommand("validate", "List references that point nowhere");
    ValidateOptions& options = optionsOf(*command, action, runValidate);
    command->add_option("RECORD", options.record, "A record")->required();
    command->add_flag("--json", options.json, "Print JSON");
    command->footer(
        "Looks at ports, port groups, functions, rates, parameters, types, states and data stores, which a\n"
        "record names by number or text.\n"
        "Exit codes: 0 clean, 1 findings, 2 a failure.\n\n"
        "Examples:\n"
        "  modelref validate plant.record\n"
        "  modelref validate plant.record --json | jq length");
}

void addGraph(CLI::App& program, Action& action) {
    CLI::App* const command = program.add_subcommand("graph", "Draw ownership or sample times for Graphviz");
    GraphOptions& options = optionsOf(*command, action, runGraph);
    command->add_option("RECORD", options.record, "A record")->required();
    command->add_option("-k,--kind", options.kind, "ownership or rates")
        ->check(CLI::IsMember({"ownership", "rates"}))
        ->capture_default_str();
    command->add_option("-d,--depth", options.depth, "How many levels of ownership below the root")
        ->check(CLI::NonNegativeNumber);
    command->add_option("-o,--output", options.output, "Where the picture goes, instead of standard output");
    command->footer(
        "Examples:\n"
        "  modelref graph plant.record --depth 2 | dot -Tsvg > plant.svg\n"
        "  modelref graph plant.record --kind rates -o rates.dot");
}

int runAction(Action const& action) {
    try {
        int const code = action();
        finishOutput();
        return code;
    } catch (Failure const& failure) {
        note(std::string("modelref: ") + failure.what());
    } catch (std::bad_alloc const&) {
        note("modelref: out of memory");
    } catch (std::exception const& error) {
        note(std::string("modelref: ") + error.what());
    }
    return kFailed;
}

}  // namespace

int run(int argc, char const* const* argv) {
    CLI::App program("Reads, compares and checks records of the interfaces of referenced models.", "modelref");
    program.require_subcommand(1);
    program.footer(
        "Exit codes: 0 for success, 1 if diff or validate found something, 2 for a failure.\n\n"
        "Examples:\n"
        "  modelref import controller.fmu -o controller.record\n"
        "  modelref tree controller.record\n"
        "  modelref diff old.record new.record || rebuild");
    Action action;
    for (auto const add : {addImport, addTree, addInfo, addShow, addDiff, addValidate, addGraph}) add(program, action);
    try {
        program.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        if (error.get_exit_code() == 0) return program.exit(error);
        note(std::string("modelref: ") + error.what() + " (--help tells more)");
        return kFailed;
    }
    return runAction(action);
}

}  // namespace modelref
