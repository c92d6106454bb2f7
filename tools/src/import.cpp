// modelref import: converts a model description of the FMI standard to a record.
#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>

#include <boost/json/value.hpp>

#include "commands.h"
#include "console.h"
#include "failure.h"
#include "fmi/record.h"
#include "record_file.h"

namespace modelref {

namespace {

void report(ImportOptions const& options, fmi::Description const& description, fmi::Record const& record) {
    std::size_t const total = description.variables.size();
    for (std::string const& warning : record.warnings) note("warning: " + onOneLine(warning));
    for (auto const& [name, reason] : record.notPlaced) note("not placed: " + onOneLine(name) + ": " + reason);
    note(options.input + ": FMI " + onOneLine(description.version) + ", model " + onOneLine(description.modelName) +
         ": " + std::to_string(total) + " variables, " + std::to_string(record.recorded) + " recorded, " +
         std::to_string(record.notPlaced.size()) + " not placed");
    if (!options.json) return;
    boost::json::array notPlaced;
    for (auto const& [name, reason] : record.notPlaced) notPlaced.push_back({{"name", name}, {"reason", reason}});
    boost::json::array warnings;
    for (std::string const& warning : record.warnings) warnings.push_back(boost::json::string(warning));
    printJson({{"file", options.input},
               {"record", options.output},
               {"fmiVersion", description.version},
               {"modelName", description.modelName},
               {"variables", total},
               {"recorded", record.recorded},
               {"notPlaced", std::move(notPlaced)},
               {"warnings", std::move(warnings)}});
}

}  // namespace

int runImport(ImportOptions const& options) {
    MetaPackageVw_modelref_info::getInstance();
    fmi::Description const description = fmi::readDescription(options.input);
    quay::zero::Model const model = quay::zero::Model::create();
    fmi::Record const record = fmi::makeRecord(model, description);
    saveRecord(model, options.output);
    report(options, description, record);
    return 0;
}

}  // namespace modelref
