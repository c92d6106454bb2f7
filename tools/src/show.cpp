// modelref show: prints one element, collection or value, found by its path.
#include <keel/text.h>
#include <quay/zero/io/io.h>
#include <quay/zero/primitive_collection.h>
#include <quay/zero/value.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <optional>
#include <span>

#include "commands.h"
#include "console.h"
#include "elements.h"
#include "failure.h"
#include "record_file.h"

namespace modelref {

namespace io = quay::zero::io;

namespace {

using Parts = std::span<std::string const>;

/// The target of a path: an element, or one of its properties, or one value of a property that has several.
struct Target {
    ModelElement element;
    Property property;
    std::optional<std::size_t> position;
};

std::vector<std::string> partsOf(std::string_view path) {
    std::vector<std::string> parts;
    while (!path.empty()) {
        std::size_t const end = std::min(path.find('/'), path.size());
        if (end > 0) parts.push_back(unescaped(path.substr(0, end)));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return parts;
}

Property propertyOf(ModelElement const& element, std::string const& name) {
    for (Property const& property : element->getMetaClass()->getProperties()) {
        if (keel::toUtf8(property->getName()) == name) return property;
    }
    throw Failure(classOf(element) + " has no property " + inQuotes(name));
}

[[noreturn]] void failWithout(std::string const& part, Property const& property, std::size_t count) {
    throw Failure(keel::toUtf8(property->getName()) + " has no " + inQuotes(part) + " among its " +
                  std::to_string(count));
}

/// Finds a child by position, else by name. Consumes one part of the path.
ModelElement memberOf(std::vector<ModelElement> const& children, Property const& property, Parts& parts) {
    std::string const& part = parts.front();
    parts = parts.subspan(1);
    auto const position = positionIn(part);
    if (position && *position < children.size()) return children[*position];
    for (ModelElement const& child : children) {
        if (nameOf(child) == part) return child;
    }
    failWithout(part, property, children.size());
}

/// Finds an entry by key only, since a key may look like another entry's position; a number chooses among equal keys.
ModelElement entryOf(std::vector<ModelElement> const& children, Property const& property, Parts& parts) {
    std::vector<std::string> const places = placesOf(children, property);
    auto const at = [&](std::string const& place) {
        auto const found = std::find(places.begin(), places.end(), place);
        return found == places.end() ? ModelElement() : children[static_cast<std::size_t>(found - places.begin())];
    };
    std::string const& part = parts.front();
    std::string const key = escaped(part);
    parts = parts.subspan(1);
    if (ModelElement const entry = at(key)) return entry;
    if (!at(key + "/0")) failWithout(part, property, children.size());
    std::string const number = parts.empty() ? "" : parts.front();
    ModelElement const entry = at(key + "/" + number);
    if (!entry) throw Failure("several entries have the key " + inQuotes(part) + ": say which, from 0");
    parts = parts.subspan(1);
    return entry;
}

Target find(Model const& model, std::string const& path) {
    auto const roots = model->getRoots();
    std::vector<std::string> const all = partsOf(path);
    Parts parts = all;
    std::size_t root = 0;
    if (path.starts_with("//") && !parts.empty()) {
        root = positionIn(parts.front()).value_or(roots.size());
        parts = parts.subspan(1);
    }
    if (root >= roots.size()) throw Failure("there is no such root: there are " + std::to_string(roots.size()));
    Target target{roots[root], {}, {}};
    while (!parts.empty()) {
        std::string const& part = parts.front();
        if (target.position || (target.property && !target.property->isComposite() && !isSeveral(target.property))) {
            throw Failure(inQuotes(part) + " leads nowhere: a value has no parts");
        }
        if (!target.property) {
            target.property = propertyOf(target.element, part);
            parts = parts.subspan(1);
            if (!target.property->isComposite() || isSeveral(target.property)) continue;
            auto const children = childrenOf(target.element, target.property);
            if (children.empty()) throw Failure(part + " is empty");
            target = {children.front(), {}, {}};
        } else if (target.property->isComposite()) {
            auto const children = childrenOf(target.element, target.property);
            auto const find = isKeyed(target.property) ? entryOf : memberOf;
            target = {find(children, target.property, parts), {}, {}};
        } else {
            target.position = positionIn(part);
            if (!target.position) throw Failure(inQuotes(part) + " is no position");
            parts = parts.subspan(1);
        }
    }
    return target;
}

/// The members of a JSON list that contains no white space between tokens.
std::vector<std::string> membersOf(std::string const& list) {
    std::vector<std::string> members;
    int depth = 0;
    bool isText = false;
    for (std::size_t i = 0; i < list.size(); ++i) {
        char const c = list[i];
        bool const isEscape = isText && c == '\\';
        if (c == '"') isText = !isText;
        bool const opens = !isText && (c == '[' || c == '{');
        bool const closes = !isText && (c == ']' || c == '}');
        if (closes) --depth;
        bool const separates = depth == 1 && !isText && c == ',';
        bool const begins = opens && depth == 0;
        if (opens) ++depth;
        if (depth == 0) break;
        if (separates || members.empty()) members.emplace_back();
        if (!separates && !begins) members.back() += c;
        if (isEscape) members.back() += list[++i];
    }
    if (members.size() == 1 && members.front().empty()) members.clear();
    return members;
}

/// The text of the property's value, or of one of its values.
std::string textOf(Target const& target) {
    std::string text = io::propertyText(target.element, target.property);
    if (!target.position) return text;
    std::vector<std::string> const members = membersOf(text);
    if (*target.position >= members.size())
        throw Failure("there are only " + std::to_string(members.size()) + " values");
    return members[*target.position];
}

void showProperty(ModelElement const& element, Property const& property, Initials& initials, bool all) {
    std::string const name = coloured(Colour::Blue, keel::toUtf8(property->getName()));
    if (property->isComposite()) {
        auto const children = childrenOf(element, property);
        if (children.empty() && !all) return;
        std::string const what = isSeveral(property) ? "(" + std::to_string(children.size()) + ")"
                                 : children.empty()  ? "none"
                                                     : classOf(children.front());
        printLine("  " + name + " " + coloured(Colour::Dim, what));
        return;
    }
    std::string const text = io::propertyText(element, property);
    if (all || text != initials.of(element, property)) printLine("  " + name + " = " + text);
}

void showElement(ModelElement const& element, bool all) {
    std::string const name = nameOf(element);
    printLine(coloured(Colour::Bold, classOf(element)) +
              (name.empty() ? "" : " " + coloured(Colour::Green, inQuotes(name))) + " " +
              coloured(Colour::Dim, to_string(element->uuid())));
    Initials initials;
    for (Property const& property : storedProperties(element)) showProperty(element, property, initials, all);
}

}  // namespace

int runShow(ShowOptions const& options) {
    Model const model = loadRecord(options.record);
    Target target;
    std::string value;
    try {
        target = find(model, options.path);
        if (target.property && !target.property->isComposite()) value = textOf(target);
    } catch (Failure const& failure) {
        throw Failure(options.record + ": " + onOneLine(options.path) + ": " + failure.what());
    }
    if (!target.property) {
        options.json ? printLine(io::toText(target.element)) : showElement(target.element, options.all);
    } else if (!target.property->isComposite()) {
        printLine(value);
    } else if (options.json) {
        std::string list;
        for (ModelElement const& child : childrenOf(target.element, target.property)) {
            list += (list.empty() ? "" : ",") + io::toText(child);
        }
        printLine("[" + list + "]");
    } else {
        for (ModelElement const& child : childrenOf(target.element, target.property)) showElement(child, options.all);
    }
    return 0;
}

}  // namespace modelref
