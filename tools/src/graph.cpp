// modelref graph: draws ownership or sample times for Graphviz.
#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/RateInfo.h>
#include <ModelRefInfoRepo/SampleTimeGraphEdge.h>
#include <ModelRefInfoRepo/UnionTsContainedTsElem.h>
#include <keel/text.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <set>

#include "commands.h"
#include "console.h"
#include "elements.h"
#include "failure.h"
#include "record_file.h"

namespace modelref {

using namespace ModelRefInfoRepo;

namespace {

/// Escapes a text for a label, in which a line feed separates lines.
std::string dotText(std::string const& text) {
    std::string result = "\"";
    for (char const c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += c == '\n' ? "\\n" : std::string(1, c);
    }
    return result + "\"";
}

class Dot {
public:
    explicit Dot(std::string const& name) {
        text_ = "digraph " + name + " {\n  rankdir=LR;\n  node [shape=box, fontname=\"sans-serif\"];\n";
    }
    void node(std::string const& id, std::string const& label) {
        text_ += "  " + id + " [label=" + dotText(label) + "];\n";
    }
    void edge(std::string const& from, std::string const& to, std::string const& label, std::string const& more = "") {
        text_ += "  " + from + " -> " + to + " [label=" + dotText(label) + more + "];\n";
    }
    std::string finish() { return text_ + "}\n"; }

private:
    std::string text_;
};

void drawOwned(Dot& dot, ModelElement const& element, std::string const& id, std::size_t depth, std::size_t& count) {
    std::string const name = onOneLine(nameOf(element));
    dot.node(id, classOf(element) + (name.empty() ? "" : "\n" + name));
    if (depth == 0) return;
    for (Property const& property : storedProperties(element)) {
        if (!property->isComposite()) continue;
        for (ModelElement const& child : childrenOf(element, property)) {
            std::string const place = "n" + std::to_string(++count);
            drawOwned(dot, child, place, depth - 1, count);
            dot.edge(id, place, keel::toUtf8(property->getName()));
        }
    }
}

std::string drawOwnership(Model const& model, std::size_t depth) {
    Dot dot("ownership");
    std::size_t count = 0;
    for (ModelElement const& root : model->getRoots()) {
        std::string const id = "n" + std::to_string(++count);
        drawOwned(dot, root, id, depth, count);
    }
    return dot.finish();
}

std::string shortNumber(double number) {
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

/// Draws the rates by number, separately for each root; an arrow for each edge, and a dashed one from a union rate to
/// the rates that it contains.
std::string drawRates(Model const& model) {
    Dot dot("rates");
    std::size_t roots = 0;
    for (ModelElement const& element : model->getRoots()) {
        ModelRefInfoRoot const root = ModelRefInfoRoot::cast(element);
        if (!root) continue;
        std::string const prefix = roots == 0 ? "r" : "root" + std::to_string(roots) + "_r";
        ++roots;
        std::set<std::string> drawn;
        auto const draw = [&](std::string const& number, std::string const& label) {
            // Graphviz ids can't contain a minus.
            std::string id = prefix + number;
            std::replace(id.begin(), id.end(), '-', '_');
            if (drawn.insert(number).second) dot.node(id, label);
            return id;
        };
        auto const idOf = [&](auto number) {
            std::string const text = std::to_string(number);
            return draw(text, "rate " + text);
        };
        std::size_t number = 0;
        for (RateInfo const& rate : *root->getRuntimeNonFcnCallRateInfos()) {
            std::string const name = onOneLine(keel::toUtf8(rate.getNonFcnCallPartitionName()));
            std::string const period =
                rate.getPeriod() < 0 ? "period not known" : "period " + shortNumber(rate.getPeriod());
            std::string const digits = std::to_string(number++);
            std::string label = name.empty() ? "rate " + digits : name;
            draw(digits, label.append("\n").append(period));
        }
        for (SampleTimeGraphEdge const& edge : *root->getAllEdges()) {
            std::string const from = idOf(edge->getSrcNodeIdx());
            dot.edge(from, idOf(edge->getDstNodeIdx()), "");
        }
        for (UnionTsContainedTsElem const& entry : *root->getUnionTsContainedTs()) {
            std::string const from = idOf(entry->getUnionTs());
            dot.edge(from, idOf(entry->getContainedTs()), "contains", ", style=dashed");
        }
    }
    return dot.finish();
}

}  // namespace

int runGraph(GraphOptions const& options) {
    Model const model = loadRecord(options.record);
    std::string const text = options.kind == "rates" ? drawRates(model) : drawOwnership(model, options.depth);
    if (options.output.empty()) {
        print(text);
    } else {
        saveText(text, options.output);
    }
    return 0;
}

}  // namespace modelref
