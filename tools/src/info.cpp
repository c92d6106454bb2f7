// modelref info: counts the content of a record.
#include <boost/json/value.hpp>
#include <map>

#include "commands.h"
#include "console.h"
#include "elements.h"
#include "failure.h"
#include "record_file.h"

namespace modelref {

namespace {

struct Counts {
    std::map<std::string, std::size_t> classes;
    std::size_t elements = 0;
    std::size_t roots = 0;
    std::size_t depth = 0;
    std::uintmax_t bytes = 0;
};

std::size_t depthOf(ModelElement::Impl const& element) {
    std::size_t depth = 1;
    for (auto const* above = element.containerImpl(); above != nullptr; above = above->containerImpl()) ++depth;
    return depth;
}

Counts count(InfoOptions const& options) {
    Model const model = loadRecord(options.record);
    Counts counts;
    counts.elements = model->elementCount();
    counts.roots = model->getRoots().size();
    std::error_code unknown;
    counts.bytes = std::filesystem::file_size(options.record, unknown);
    if (unknown) counts.bytes = 0;
    model->forEachElement([&](ModelElement::Impl& element) {
        ++counts.classes[classOf(ModelElement(&element))];
        counts.depth = std::max(counts.depth, depthOf(element));
    });
    return counts;
}

std::string column(std::size_t number) {
    std::string const digits = std::to_string(number);
    return std::string(digits.size() < 9 ? 9 - digits.size() : 0, ' ') + digits + "  ";
}

}  // namespace

int runInfo(InfoOptions const& options) {
    Counts const counts = count(options);
    if (options.json) {
        boost::json::object classes;
        for (auto const& [name, number] : counts.classes) classes[name] = number;
        printJson({{"file", options.record},
                   {"bytes", counts.bytes},
                   {"roots", counts.roots},
                   {"elements", counts.elements},
                   {"depth", counts.depth},
                   {"classes", std::move(classes)}});
        return 0;
    }
    printLine(column(counts.bytes) + "bytes");
    printLine(column(counts.elements) + "elements, " + std::to_string(counts.roots) + " of them roots");
    printLine(column(counts.depth) + "levels");
    printLine(column(counts.classes.size()) + "classes in use:");
    for (auto const& [name, number] : counts.classes) printLine(column(number) + coloured(Colour::Bold, name));
    return 0;
}

}  // namespace modelref
