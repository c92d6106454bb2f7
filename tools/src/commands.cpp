#include "commands.h"

#include <exception>
#include <new>

#include "console.h"
#include "failure.h"

namespace modelref {

namespace {

constexpr int kFailed = 2;

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
