#include "floor_record.h"

#include <bit>

namespace hand {

namespace {

void logWhole(Store& store, int& field) {
    if (store.open()) {
        store.log().entries.emplace_back(Entry::Kind::HalfWord, &field, static_cast<std::uint64_t>(field));
    }
}

}  // namespace

void Condition::setFirst(int value) {
    if (first == value) return;
    logWhole(*store, first);
    first = value;
}

void Edge::setFirst(std::uint64_t value) {
    if (first == value) return;
    if (store->open()) store->log().entries.emplace_back(Entry::Kind::Word, &first, first);
    first = value;
}

void Edge::setSecond(std::uint64_t value) {
    if (second == value) return;
    if (store->open()) store->log().entries.emplace_back(Entry::Kind::Word, &second, second);
    second = value;
}

void Port::setNumber(int value) {
    if (number == value) return;
    logWhole(*store, number);
    number = value;
}

void Port::setMinimum(double value) {
    if (minimum == value) return;
    if (store->open()) {
        store->log().entries.emplace_back(Entry::Kind::Word, &minimum, std::bit_cast<std::uint64_t>(minimum));
    }
    minimum = value;
}

void Port::setLabel(std::u16string const& value) {
    if (label == value) return;
    if (store->open()) {
        store->log().entries.emplace_back(Entry::Kind::Text, &label, 0);
        store->log().texts.push_back(std::move(label));
    }
    label = value;
}

namespace {

template <std::size_t I>
Access flag() {
    return {u"flag", [](void const* p) -> Any { return static_cast<Port const*>(p)->flags[I]; }, nullptr};
}
template <std::size_t I>
Access whole() {
    return {u"number", [](void const* p) -> Any { return static_cast<Port const*>(p)->numbers[I]; }, nullptr};
}
template <std::size_t I>
Access text() {
    return {u"text", [](void const* p) -> Any { return static_cast<Port const*>(p)->texts[I]; }, nullptr};
}
template <std::size_t I>
Access child() {
    return {
        u"child",
        [](void const* p) -> Any { return static_cast<void const*>(static_cast<Port const*>(p)->otherChildren[I]); },
        nullptr};
}

}  // namespace

std::array<Access, 31> const portTable{
    Access{u"number", [](void const* p) -> Any { return static_cast<Port const*>(p)->number; },
           [](void* p, Any const& v) { static_cast<Port*>(p)->setNumber(std::get<int>(v)); }},
    Access{u"label", [](void const* p) -> Any { return static_cast<Port const*>(p)->label; },
           [](void* p, Any const& v) { static_cast<Port*>(p)->setLabel(std::get<std::u16string>(v)); }},
    Access{u"minimum", [](void const* p) -> Any { return static_cast<Port const*>(p)->minimum; },
           [](void* p, Any const& v) { static_cast<Port*>(p)->setMinimum(std::get<double>(v)); }},
    Access{u"maximum", [](void const* p) -> Any { return static_cast<Port const*>(p)->maximum; }, nullptr},
    Access{u"rates", [](void const* p) -> Any { return static_cast<void const*>(&static_cast<Port const*>(p)->rates); },
           nullptr},
    Access{u"conditions",
           [](void const* p) -> Any { return static_cast<void const*>(&static_cast<Port const*>(p)->conditions); },
           nullptr},
    Access{u"events",
           [](void const* p) -> Any { return static_cast<void const*>(static_cast<Port const*>(p)->events.get()); },
           nullptr},
    flag<0>(),
    flag<1>(),
    flag<2>(),
    flag<3>(),
    flag<4>(),
    flag<5>(),
    flag<6>(),
    flag<7>(),
    flag<8>(),
    whole<0>(),
    whole<1>(),
    whole<2>(),
    whole<3>(),
    text<0>(),
    text<1>(),
    text<2>(),
    text<3>(),
    text<4>(),
    text<5>(),
    text<6>(),
    text<7>(),
    child<0>(),
    child<1>(),
    child<2>(),
};

Note& makeEntry(Root& root, int key, std::u16string const& text) {
    auto made = std::make_unique<Note>(*root.store);
    made->key = key;
    made->text = text;
    root.store->index.emplace(made->id, made.get());
    return *root.maps[0].emplace(key, std::move(made)).first->second;
}

EventsInfo& makeEvents(Port& port) {
    port.events = std::make_unique<EventsInfo>(*port.store);
    port.store->index.emplace(port.events->id, port.events.get());
    return *port.events;
}

void destroyRecord(Root& root) {
    auto& index = root.store->index;
    for (auto const& port : root.ports) {
        for (auto const& condition : port->conditions) index.erase(condition->id);
        if (port->events) index.erase(port->events->id);
        index.erase(port->id);
    }
    for (auto const& edge : root.edges) index.erase(edge->id);
    for (auto const& entry : root.maps[0]) index.erase(entry.second->id);
    destroy(root);
}

}  // namespace hand
