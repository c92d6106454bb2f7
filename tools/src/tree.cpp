// modelref tree: prints which element owns which.
#include <keel/text.h>

#include <boost/json/value.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <limits>

#include "commands.h"
#include "console.h"
#include "elements.h"
#include "failure.h"
#include "record_file.h"

namespace modelref {

namespace {

std::string labelOf(ModelElement const& element, TreeOptions const& options) {
    std::string label = coloured(Colour::Bold, classOf(element));
    if (std::string const name = nameOf(element); !name.empty()) label += " " + coloured(Colour::Green, inQuotes(name));
    if (options.ids) label += " " + coloured(Colour::Dim, to_string(element->uuid()));
    return label;
}

struct Branch {
    std::string label;
    ModelElement element;
};

/// One line for each child: "inports/0 InportInformation 'speed'". The paths of `show` consist of such places.
std::vector<Branch> branchesOf(ModelElement const& element, TreeOptions const& options) {
    std::vector<Branch> result;
    for (Property const& property : storedProperties(element)) {
        if (!property->isComposite()) continue;
        std::string const name = keel::toUtf8(property->getName());
        auto const children = childrenOf(element, property);
        std::vector<std::string> const places = placesOf(children, property);
        for (std::size_t i = 0; i < children.size(); ++i) {
            std::string const place = isSeveral(property) ? name + "/" + places[i] : name;
            result.push_back({coloured(Colour::Blue, place) + " " + labelOf(children[i], options), children[i]});
        }
    }
    return result;
}

void printBranches(ModelElement const& element, std::string const& indent, std::size_t depth,
                   TreeOptions const& options) {
    if (depth == 0) return;
    std::vector<Branch> const branches = branchesOf(element, options);
    for (Branch const& branch : branches) {
        bool const isLast = &branch == &branches.back();
        printLine(indent + (isLast ? "└─ " : "├─ ") + branch.label);
        printBranches(branch.element, indent + (isLast ? "   " : "│  "), depth - 1, options);
    }
}

boost::json::object describe(ModelElement const& element, std::size_t depth) {
    boost::json::object result{{"class", classOf(element)}, {"id", to_string(element->uuid())}};
    if (std::string const name = nameOf(element); !name.empty()) result["name"] = name;
    if (depth == 0) return result;
    boost::json::object owned;
    for (Property const& property : storedProperties(element)) {
        if (!property->isComposite()) continue;
        boost::json::array children;
        for (ModelElement const& child : childrenOf(element, property)) children.push_back(describe(child, depth - 1));
        if (!children.empty()) owned[keel::toUtf8(property->getName())] = std::move(children);
    }
    if (!owned.empty()) result["owns"] = std::move(owned);
    return result;
}

}  // namespace

int runTree(TreeOptions const& options) {
    Model const model = loadRecord(options.record);
    boost::json::array roots;
    for (ModelElement const& root : model->getRoots()) {
        if (options.json) {
            roots.push_back(describe(root, options.depth));
        } else {
            printLine(labelOf(root, options));
            printBranches(root, "", options.depth, options);
        }
    }
    if (options.json) printJson(roots);
    return 0;
}

}  // namespace modelref
