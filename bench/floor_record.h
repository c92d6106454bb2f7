// The floor's larger objects: a port of 31 properties with a table of its getters and setters, and a root of 171.
#pragma once

#include <array>
#include <boost/optional.hpp>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "floor.h"

namespace hand {

/// A value of any property.
using Any = std::variant<std::monostate, bool, int, unsigned, double, std::u16string, void const*>;

struct EventsInfo : Object {
    using Object::Object;
    std::array<std::u16string, 4> names;
};

struct Condition : Object {
    using Object::Object;
    void setFirst(int value);

    int first = 0;
    int second = 0;
    List<Condition>* home = nullptr;
};

/// Has as many values of each type as an input port.
struct Port : Object {
    using Object::Object;
    void setNumber(int value);
    void setMinimum(double value);
    void setLabel(std::u16string const& value);

    std::array<bool, 9> flags{};
    int number = 0;
    std::array<int, 4> numbers{};
    double minimum = 0;
    double maximum = 0;
    std::u16string label;
    std::array<std::u16string, 8> texts;
    std::vector<double> rates;
    std::unique_ptr<EventsInfo> events;
    std::array<void*, 3> otherChildren{};
    List<Condition> conditions;
    List<Port>* home = nullptr;
};

/// How a property is reached by name: the direct getter and setter, through a table.
struct Access {
    char16_t const* name;
    Any (*get)(void const* object);
    void (*set)(void* object, Any const& value);
};
extern std::array<Access, 31> const portTable;

struct Edge : Object {
    using Object::Object;
    void setFirst(std::uint64_t value);
    void setSecond(std::uint64_t value);

    std::uint64_t first = 0;
    std::uint64_t second = 0;
    List<Edge>* home = nullptr;
};

/// Has as many values of each type as the record's root.
struct Root : Object {
    using Object::Object;

    std::array<bool, 47> flags{};
    std::array<int, 19> numbers{};
    std::array<double, 4> reals{};
    std::array<std::u16string, 8> texts;
    std::array<boost::optional<bool>, 11> optionalFlags;
    std::array<boost::optional<int>, 6> optionalNumbers;
    std::array<std::vector<bool>, 3> flagLists;
    std::array<std::vector<int>, 4> numberLists;
    std::array<std::vector<std::u16string>, 6> textLists;
    std::array<std::set<std::u16string>, 10> textSets;
    std::array<std::unique_ptr<EventsInfo>, 23> children;
    List<Port> ports;
    List<Edge> edges;
    std::array<List<Small>, 25> otherLists;
    std::array<std::map<int, std::unique_ptr<Note>>, 2> maps;
    List<Root>* home = nullptr;
};

/// Makes an entry of the root's first map, and the events of a port.
Note& makeEntry(Root& root, int key, std::u16string const& text);
EventsInfo& makeEvents(Port& port);
/// Removes the ids of everything below the root from the index, and the root from its owning list.
void destroyRecord(Root& root);

}  // namespace hand
