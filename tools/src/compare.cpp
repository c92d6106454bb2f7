#include "compare.h"

#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/RootIOPortInformation.h>
#include <keel/text.h>
#include <quay/zero/io/io.h>
#include <quay/zero/value.h>

#include <algorithm>
#include <iterator>
#include <set>

#include "failure.h"

namespace modelref {

using namespace quay::zero;

namespace {

using Kind = Difference::Kind;
using Elements = std::vector<ModelElement>;

std::string describe(ModelElement const& element) {
    std::string const name = nameOf(element);
    return classOf(element) + (name.empty() ? "" : " " + inQuotes(name));
}

/// The target of a reference as text; "" for none.
std::string referenceText(ModelElement const& element, Property const& property, Paths& paths) {
    std::string result;
    for (std::string const& reference : referencesOf(element, property, paths)) {
        result += (result.empty() ? "" : ", ") + reference;
    }
    return result;
}

/// All values of an element and its children as text, without ids.
std::string contentOf(ModelElement const& element, Paths& paths) {
    std::string result = classOf(element) + "{";
    for (Property const& property : storedProperties(element)) {
        if (!property->isComposite()) {
            result += io::propertyText(element, property) + ";";
            continue;
        }
        std::vector<std::string> children;
        for (ModelElement const& child : childrenOf(element, property)) children.push_back(contentOf(child, paths));
        if (property->getFlags() == ValueFlags::Set) std::sort(children.begin(), children.end());
        for (std::string const& child : children) result += child + ",";
        result += referenceText(element, property, paths) + ";";
    }
    return result + "}";
}

/// The names by which elements are matched, and the parts of their paths that `show` accepts.
struct Named {
    std::vector<std::string> names;
    std::vector<std::string> places;
};

/// The names of ports, if all are different. A port whose name looks like a position is named by its position.
Named portNames(Elements const& ports) {
    Named result;
    std::set<std::string> different;
    for (std::size_t i = 0; i < ports.size(); ++i) {
        std::string const name = ModelRefInfoRepo::RootIOPortInformation::cast(ports[i]) ? nameOf(ports[i]) : "";
        if (name.empty() || !different.insert(name).second) return {};
        result.names.push_back(name);
        result.places.push_back(positionIn(name) ? std::to_string(i) : escaped(name));
    }
    return result;
}

/// The keys of a map's entries; in a multimap with a number for each entry of the same key.
Named keysOf(Elements const& entries, Property const& property) {
    Named result;
    std::map<std::string, std::size_t> count;
    for (ModelElement const& entry : entries) {
        std::string const key = escaped(nameOf(entry));
        result.names.push_back(key + "/" + std::to_string(count[key]++));
    }
    result.places = placesOf(entries, property);
    return result;
}

/// Marks the members of a longest rising subsequence of numbers that are all different.
std::vector<bool> longestRise(std::vector<std::size_t> const& numbers) {
    constexpr auto kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> ends;  // by length less one: the position of the lowest end of a rising run of that length
    std::vector<std::size_t> before(numbers.size(), kNone);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        auto const place = std::lower_bound(ends.begin(), ends.end(), numbers[i],
                                            [&](std::size_t end, std::size_t n) { return numbers[end] < n; });
        if (place != ends.begin()) before[i] = *std::prev(place);
        if (place == ends.end()) {
            ends.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<bool> result(numbers.size(), false);
    for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = before[i]) result[i] = true;
    return result;
}

/// A root's class and the name of its interface; "" without a name.
std::string interfaceOf(ModelElement const& root) {
    std::string name = nameOf(root);
    if (auto const record = ModelRefInfoRepo::ModelRefInfoRoot::cast(root)) {
        ModelElement const interface = record->getRootBlockDiagramInterface();
        name = interface ? nameOf(interface) : "";
    }
    return name.empty() ? "" : classOf(root) + " " + name;
}

class Comparison {
public:
    void elements(ModelElement const& before, ModelElement const& after, std::string const& path) {
        if (before->getMetaClass() != after->getMetaClass()) {
            add(Kind::Changed, path, describe(before), describe(after));
            return;
        }
        for (Property const& property : storedProperties(before)) {
            std::string const place = path + "/" + keel::toUtf8(property->getName());
            if (!property->isComposite()) {
                value(before, after, property, place);
                continue;
            }
            references(before, after, property, place);
            if (isSeveral(property)) {
                several(property, childrenOf(before, property), childrenOf(after, property), place);
            } else {
                byPosition(childrenOf(before, property), childrenOf(after, property),
                           [&](std::size_t) { return place; });
            }
        }
    }

    /// The order of roots has no meaning: they are matched by interface, the others by content, the rest by position.
    void roots(Elements const& before, Elements const& after) {
        std::vector<std::size_t> match(before.size(), kNone);
        std::vector<bool> isTaken(after.size(), false);
        auto const pair = [&](auto const& textOf) {
            std::map<std::string, std::vector<std::size_t>> left;
            for (std::size_t i = after.size(); i-- > 0;) {
                if (!isTaken[i]) left[textOf(after[i], afterPaths_)].push_back(i);
            }
            for (std::size_t i = 0; i < before.size(); ++i) {
                if (match[i] != kNone) continue;
                std::string const text = textOf(before[i], beforePaths_);
                auto const found = left.find(text);
                if (text.empty() || found == left.end() || found->second.empty()) continue;
                match[i] = found->second.back();
                isTaken[match[i]] = true;
                found->second.pop_back();
            }
        };
        if (before.size() > 1 || after.size() > 1) {
            pair([](ModelElement const& root, Paths&) { return interfaceOf(root); });
            pair([](ModelElement const& root, Paths& paths) { return contentOf(root, paths); });
        }
        pair([](ModelElement const&, Paths&) { return "any"; });
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (match[i] != kNone) {
                elements(before[i], after[match[i]], beforePaths_.of(before[i]));
            } else {
                add(Kind::Removed, beforePaths_.of(before[i]), describe(before[i]), "");
            }
        }
        for (std::size_t i = 0; i < after.size(); ++i) {
            if (!isTaken[i]) add(Kind::Added, afterPaths_.of(after[i]), "", describe(after[i]));
        }
    }

    std::vector<Difference> take() { return std::move(differences_); }

private:
    static constexpr auto kNone = static_cast<std::size_t>(-1);

    void byPosition(Elements const& before, Elements const& after, auto const& placeOf) {
        std::size_t const common = std::min(before.size(), after.size());
        for (std::size_t i = 0; i < common; ++i) elements(before[i], after[i], placeOf(i));
        for (std::size_t i = common; i < before.size(); ++i) add(Kind::Removed, placeOf(i), describe(before[i]), "");
        for (std::size_t i = common; i < after.size(); ++i) add(Kind::Added, placeOf(i), "", describe(after[i]));
    }

    void add(Kind kind, std::string path, std::string before, std::string after) {
        differences_.push_back({kind, std::move(path), std::move(before), std::move(after)});
    }

    void value(ModelElement const& before, ModelElement const& after, Property const& property,
               std::string const& path) {
        auto const& tag = ReflectionPrivateTag::PUBLIC_ACCESS;
        // Most are equal, which a comparison of the values shows without making texts.
        bool const isCollection = isSeveral(property);
        if (!isCollection && before->getPropertyValue(property, tag) == after->getPropertyValue(property, tag)) return;
        std::string const was = io::propertyText(before, property);
        std::string const is = io::propertyText(after, property);
        if (was != is) add(Kind::Changed, path, was, is);
    }

    void references(ModelElement const& before, ModelElement const& after, Property const& property,
                    std::string const& path) {
        std::string const was = referenceText(before, property, beforePaths_);
        std::string const is = referenceText(after, property, afterPaths_);
        if (was != is) add(Kind::Changed, path, "[" + was + "]", "[" + is + "]");
    }

    void several(Property const& property, Elements const& before, Elements const& after, std::string const& path) {
        auto const numbered = [&](std::size_t i) { return path + "/" + std::to_string(i); };
        if (property->getFlags() == ValueFlags::Set) return bySet(before, after, path);
        if (property->getFlags() == ValueFlags::Sequence) {
            Named const was = portNames(before);
            Named const is = portNames(after);
            bool const haveNames = was.names.size() == before.size() && is.names.size() == after.size();
            if (!haveNames) return byPosition(before, after, numbered);
            byName(before, after, was, is, path);
            order(was, is, path);
            return;
        }
        byName(before, after, keysOf(before, property), keysOf(after, property), path);
    }

    void byName(Elements const& before, Elements const& after, Named const& was, Named const& is,
                std::string const& path) {
        std::map<std::string_view, std::size_t> places;
        for (std::size_t i = 0; i < is.names.size(); ++i) places[is.names[i]] = i;
        std::vector<bool> matched(after.size(), false);
        for (std::size_t i = 0; i < before.size(); ++i) {
            std::string const place = path + "/" + was.places[i];
            auto const found = places.find(was.names[i]);
            if (found == places.end()) {
                add(Kind::Removed, place, describe(before[i]), "");
            } else {
                matched[found->second] = true;
                elements(before[i], after[found->second], place);
            }
        }
        for (std::size_t i = 0; i < after.size(); ++i) {
            if (!matched[i]) add(Kind::Added, path + "/" + is.places[i], "", describe(after[i]));
        }
    }

    /// Reports the members of both sides that moved: as few as explain the new order.
    void order(Named const& was, Named const& is, std::string const& path) {
        std::map<std::string_view, std::size_t> now;
        for (std::size_t i = 0; i < is.names.size(); ++i) now[is.names[i]] = i;
        std::vector<std::size_t> kept;    // places in `was`
        std::vector<std::size_t> places;  // places in `is`
        for (std::size_t i = 0; i < was.names.size(); ++i) {
            auto const found = now.find(was.names[i]);
            if (found == now.end()) continue;
            kept.push_back(i);
            places.push_back(found->second);
        }
        std::vector<bool> const stays = longestRise(places);
        for (std::size_t i = 0; i < kept.size(); ++i) {
            if (stays[i]) continue;
            add(Kind::Moved, path + "/" + was.places[kept[i]], std::to_string(kept[i]), std::to_string(places[i]));
        }
    }

    void bySet(Elements const& before, Elements const& after, std::string const& path) {
        std::map<std::string, std::vector<std::size_t>> left;  // content, and its positions in `after`
        for (std::size_t i = 0; i < after.size(); ++i) left[contentOf(after[i], afterPaths_)].push_back(i);
        for (std::size_t i = 0; i < before.size(); ++i) {
            auto const found = left.find(contentOf(before[i], beforePaths_));
            if (found == left.end() || found->second.empty()) {
                add(Kind::Removed, path + "/" + std::to_string(i), describe(before[i]), "");
            } else {
                found->second.pop_back();
            }
        }
        for (auto const& [content, places] : left) {
            for (std::size_t const i : places) add(Kind::Added, path + "/" + std::to_string(i), "", describe(after[i]));
        }
    }

    Paths beforePaths_;
    Paths afterPaths_;
    std::vector<Difference> differences_;
};

}  // namespace

std::vector<Difference> compare(Model const& before, Model const& after) {
    Comparison comparison;
    comparison.roots(before->getRoots(), after->getRoots());
    return comparison.take();
}

}  // namespace modelref
