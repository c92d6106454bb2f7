#include "compare.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/text.h>
#include <quay/zero/io/io.h>
#include <quay/zero/value.h>

#include <algorithm>
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

/// Everything that an element says, without ids.
std::string contentOf(ModelElement const& element) {
    std::string result = classOf(element) + "{";
    for (Property const& property : storedProperties(element)) {
        if (!property->isComposite()) {
            result += io::propertyText(element, property) + ";";
            continue;
        }
        std::vector<std::string> children;
        for (ModelElement const& child : childrenOf(element, property)) children.push_back(contentOf(child));
        if (property->getFlags() == ValueFlags::Set) std::sort(children.begin(), children.end());
        for (std::string const& child : children) result += child + ",";
        result += ";";
    }
    return result + "}";
}

/// The names of ports, if each has one of its own.
std::vector<std::string> portNames(Elements const& elements) {
    std::vector<std::string> names;
    std::set<std::string> different;
    for (ModelElement const& element : elements) {
        names.push_back(ModelRefInfoRepo::RootIOPortInformation::cast(element) ? nameOf(element) : "");
        if (names.back().empty() || !different.insert(names.back()).second) return {};
    }
    return names;
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
            } else if (isSeveral(property)) {
                several(property, childrenOf(before, property), childrenOf(after, property), place);
            } else {
                byPosition(childrenOf(before, property), childrenOf(after, property),
                           [&](std::size_t) { return place; });
            }
        }
    }

    void byPosition(Elements const& before, Elements const& after, auto const& placeOf) {
        std::size_t const common = std::min(before.size(), after.size());
        for (std::size_t i = 0; i < common; ++i) elements(before[i], after[i], placeOf(i));
        for (std::size_t i = common; i < before.size(); ++i) add(Kind::Removed, placeOf(i), describe(before[i]), "");
        for (std::size_t i = common; i < after.size(); ++i) add(Kind::Added, placeOf(i), "", describe(after[i]));
    }

    std::vector<Difference> take() { return std::move(differences_); }

private:
    void add(Kind kind, std::string path, std::string before, std::string after) {
        differences_.push_back({kind, std::move(path), std::move(before), std::move(after)});
    }

    void value(ModelElement const& before, ModelElement const& after, Property const& property,
               std::string const& path) {
        auto const& tag = ReflectionPrivateTag::PUBLIC_ACCESS;
        // Most are the same, which is told without their texts.
        bool const isCollection = isSeveral(property);
        if (!isCollection && before->getPropertyValue(property, tag) == after->getPropertyValue(property, tag)) return;
        std::string const was = io::propertyText(before, property);
        std::string const is = io::propertyText(after, property);
        if (was != is) add(Kind::Changed, path, was, is);
    }

    void several(Property const& property, Elements const& before, Elements const& after, std::string const& path) {
        auto const numbered = [&](std::size_t i) { return path + "/" + std::to_string(i); };
        if (property->getFlags() == ValueFlags::Set) return bySet(before, after, path);
        if (property->getFlags() == ValueFlags::Sequence) {
            std::vector<std::string> const was = portNames(before);
            std::vector<std::string> const is = portNames(after);
            bool const haveNames = was.size() == before.size() && is.size() == after.size();
            if (!haveNames) return byPosition(before, after, numbered);
            byName(before, after, was, is, path);
            order(was, is, path);
            return;
        }
        byName(before, after, keys(before), keys(after), path);
    }

    /// A map's keys; in a multimap with a number for each entry of the same key.
    static std::vector<std::string> keys(Elements const& entries) {
        std::vector<std::string> result;
        std::map<std::string, std::size_t> count;
        for (ModelElement const& entry : entries) {
            std::string const key = nameOf(entry);
            std::size_t const number = count[key]++;
            result.push_back(number == 0 ? key : key + "#" + std::to_string(number));
        }
        return result;
    }

    void byName(Elements const& before, Elements const& after, std::vector<std::string> const& was,
                std::vector<std::string> const& is, std::string const& path) {
        std::map<std::string_view, std::size_t> places;
        for (std::size_t i = 0; i < is.size(); ++i) places[is[i]] = i;
        std::vector<bool> matched(after.size(), false);
        for (std::size_t i = 0; i < before.size(); ++i) {
            std::string const place = path + "/" + escaped(was[i]);
            auto const found = places.find(was[i]);
            if (found == places.end()) {
                add(Kind::Removed, place, describe(before[i]), "");
            } else {
                matched[found->second] = true;
                elements(before[i], after[found->second], place);
            }
        }
        for (std::size_t i = 0; i < after.size(); ++i) {
            if (!matched[i]) add(Kind::Added, path + "/" + escaped(is[i]), "", describe(after[i]));
        }
    }

    /// What stands at another place among those that both have.
    void order(std::vector<std::string> const& was, std::vector<std::string> const& is, std::string const& path) {
        std::vector<std::string> kept = commonOf(was, is);
        std::vector<std::string> const now = commonOf(is, was);
        std::map<std::string_view, std::size_t> places;
        for (std::size_t i = 0; i < now.size(); ++i) places[now[i]] = i;
        for (std::size_t i = 0; i < kept.size(); ++i) {
            std::size_t const place = places[kept[i]];
            if (place == i) continue;
            add(Kind::Moved, path + "/" + escaped(kept[i]), std::to_string(i), std::to_string(place));
        }
    }
    static std::vector<std::string> commonOf(std::vector<std::string> const& from,
                                             std::vector<std::string> const& other) {
        std::set<std::string_view> const known(other.begin(), other.end());
        std::vector<std::string> result;
        for (std::string const& name : from) {
            if (known.contains(name)) result.push_back(name);
        }
        return result;
    }

    void bySet(Elements const& before, Elements const& after, std::string const& path) {
        std::map<std::string, std::vector<std::size_t>> left;  // content, and where it stands in `after`
        for (std::size_t i = 0; i < after.size(); ++i) left[contentOf(after[i])].push_back(i);
        for (std::size_t i = 0; i < before.size(); ++i) {
            auto const found = left.find(contentOf(before[i]));
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

    std::vector<Difference> differences_;
};

}  // namespace

std::vector<Difference> compare(Model const& before, Model const& after) {
    Comparison comparison;
    comparison.byPosition(before->getRoots(), after->getRoots(),
                          [](std::size_t i) { return i == 0 ? std::string() : "//" + std::to_string(i); });
    return comparison.take();
}

}  // namespace modelref
