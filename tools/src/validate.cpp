// modelref validate: finds references within a record whose target doesn't exist.
#include <boost/json/value.hpp>

#include "checks.h"
#include "commands.h"
#include "console.h"
#include "record_file.h"

namespace modelref {

namespace {}  // namespace

int runValidate(ValidateOptions const& options) {
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

}  // namespace modelref
