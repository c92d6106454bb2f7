// Version 3 of the FMI standard: an element per variable that is named by its type, references by value reference.
#include <array>
#include <unordered_map>

#include "../failure.h"
#include "numbers.h"
#include "reader.h"

namespace modelref::fmi {

namespace {

constexpr std::array<std::pair<std::string_view, Type>, 15> kTypes = {{{"Float64", Type::Float64},
                                                                       {"Float32", Type::Float32},
                                                                       {"Int8", Type::Int8},
                                                                       {"UInt8", Type::UInt8},
                                                                       {"Int16", Type::Int16},
                                                                       {"UInt16", Type::UInt16},
                                                                       {"Int32", Type::Int32},
                                                                       {"UInt32", Type::UInt32},
                                                                       {"Int64", Type::Int64},
                                                                       {"UInt64", Type::UInt64},
                                                                       {"Boolean", Type::Boolean},
                                                                       {"String", Type::String},
                                                                       {"Binary", Type::Binary},
                                                                       {"Enumeration", Type::Enumeration},
                                                                       {"Clock", Type::Clock}}};

constexpr std::array<std::pair<std::string_view, ClockInterval::Kind>, 7> kIntervals = {
    {{"constant", ClockInterval::Kind::Constant},
     {"fixed", ClockInterval::Kind::Fixed},
     {"calculated", ClockInterval::Kind::Calculated},
     {"tunable", ClockInterval::Kind::Tunable},
     {"changing", ClockInterval::Kind::Changing},
     {"countdown", ClockInterval::Kind::Countdown},
     {"triggered", ClockInterval::Kind::Triggered}}};

class Reader3 final : public Reader {
public:
    using Reader::Reader;

private:
    Type typeOf(pugi::xml_node const& node, std::string_view name) const {
        for (auto const& [word, type] : kTypes) {
            if (word == name) return type;
        }
        xml_.fail(node, "<" + std::string(node.name()) + "> is no known type");
    }

    std::size_t variableOf(pugi::xml_node const& node, char const* attribute, std::uint64_t reference) const {
        auto const found = byReference_.find(reference);
        if (found == byReference_.end()) {
            xml_.fail(node, std::string(attribute) + " is " + std::to_string(reference) +
                                ", which is no variable's value reference");
        }
        return found->second;
    }
    std::vector<std::size_t> variablesOf(pugi::xml_node const& node, char const* attribute) const {
        std::vector<std::size_t> result;
        for (std::uint64_t const reference : xml_.naturals(node, attribute)) {
            result.push_back(variableOf(node, attribute, reference));
        }
        return result;
    }

    void readTypes(pugi::xml_node const& definitions) override {
        for (pugi::xml_node const node : definitions.children()) {
            std::string_view const name = node.name();
            if (node.type() != pugi::node_element || !name.ends_with("Type")) continue;
            Type const type = typeOf(node, name.substr(0, name.size() - 4));
            declare(node, xml_.required(node, "name"), {type, node});
            if (type == Type::Enumeration) readEnumeration(node.attribute("name").value(), node);
        }
    }

    void enterReference(pugi::xml_node const& node, std::uint64_t reference, std::size_t position) override {
        if (!byReference_.emplace(reference, position).second) {
            xml_.fail(node, "there is a second value reference " + std::to_string(reference));
        }
    }

    void readVariable(pugi::xml_node const& node, Variable& variable) override {
        variable.type = typeOf(node, node.name());
        readCommon(node, variable);
        readTyped(node, variable);
        if (variable.type == Type::Clock) readClock(node, variable.clock);
        // Texts and bytes have an XML element for each start value, all other types have a list.
        if (variable.type == Type::String || variable.type == Type::Binary) {
            for (pugi::xml_node const start : node.children("Start")) {
                variable.start.emplace_back(start.attribute("value").value());
            }
        } else {
            variable.start = words(node.attribute("start").value());
        }
    }

    void readClock(pugi::xml_node const& node, ClockInterval& clock) const {
        std::string const word = holderOf(node, "intervalVariability").attribute("intervalVariability").value();
        if (word.empty()) xml_.fail(node, "a clock needs an intervalVariability");
        bool known = false;
        for (auto const& [name, kind] : kIntervals) {
            if (name != word) continue;
            clock.kind = kind;
            known = true;
        }
        if (!known) xml_.fail(node, "intervalVariability is " + inQuotes(word) + ", which isn't known");
        auto const seconds = [&](char const* decimal, char const* counter) -> std::optional<double> {
            if (auto const value = xml_.number(holderOf(node, decimal), decimal)) return value;
            auto const ticks = xml_.natural(holderOf(node, counter), counter);
            auto const resolution = xml_.natural(holderOf(node, "resolution"), "resolution");
            if (!ticks || !resolution) return {};
            if (*resolution == 0) xml_.fail(node, "resolution is 0");
            return static_cast<double>(*ticks) / static_cast<double>(*resolution);
        };
        clock.interval = seconds("intervalDecimal", "intervalCounter");
        clock.shift = seconds("shiftDecimal", "shiftCounter").value_or(0);
        if (clock.interval && !(*clock.interval > 0)) xml_.fail(node, "a clock's interval isn't above 0");
        if (auto const priority = xml_.natural(holderOf(node, "priority"), "priority")) {
            if (*priority > kMostElements) xml_.fail(node, "priority is too large");
            clock.priority = static_cast<int>(*priority);
        }
    }

    void resolve(pugi::xml_node const& node, Variable& variable) override {
        if (auto const reference = xml_.natural(node, "derivative")) {
            variable.derivativeOf = variableOf(node, "derivative", *reference);
        }
        if (auto const reference = xml_.natural(node, "previous")) {
            variable.previous = variableOf(node, "previous", *reference);
        }
        variable.clocks = variablesOf(node, "clocks");
        for (std::size_t const clock : variable.clocks) {
            Variable const& named = d_.variables[clock];
            if (named.type != Type::Clock) {
                xml_.fail(node, "clocks names " + inQuotes(named.name) + ", which is no clock");
            }
            if (&named == &variable) xml_.fail(node, "clocks names the clock itself");
        }
        std::uint64_t width = 1;
        for (pugi::xml_node const dimension : node.children("Dimension")) {
            variable.dimensions.push_back(readDimension(dimension));
            std::uint64_t const size = variable.dimensions.back().size;
            if (size > kMostElements || (size > 0 && width > kMostElements / size)) {
                xml_.fail(dimension, inQuotes(variable.name) + " has too many elements");
            }
            width *= size;
        }
    }

    /// Reads a dimension: a fixed size, or the start value of the variable that gives it.
    Dimension readDimension(pugi::xml_node const& node) const {
        Dimension result;
        if (auto const size = xml_.natural(node, "start")) {
            result.size = *size;
            return result;
        }
        xml_.required(node, "valueReference");
        result.variable = variableOf(node, "valueReference", *xml_.natural(node, "valueReference"));
        Variable const& giver = d_.variables[*result.variable];
        if (giver.start.size() != 1 || !parseInteger(giver.start.front(), result.size)) {
            xml_.fail(node, inQuotes(giver.name) + " gives a dimension and has no number as its start");
        }
        return result;
    }

    std::vector<Unknown> unknowns(pugi::xml_node const& structure, char const* name) const {
        std::vector<Unknown> result;
        for (pugi::xml_node const node : structure.children(name)) {
            xml_.required(node, "valueReference");
            Unknown unknown;
            unknown.variable = variableOf(node, "valueReference", *xml_.natural(node, "valueReference"));
            if (node.attribute("dependencies")) unknown.dependencies = variablesOf(node, "dependencies");
            result.push_back(std::move(unknown));
        }
        return result;
    }

    void readStructure(pugi::xml_node const& structure) override {
        d_.outputs = unknowns(structure, "Output");
        d_.derivatives = unknowns(structure, "ContinuousStateDerivative");
        d_.eventIndicators = unknowns(structure, "EventIndicator");
        unknowns(structure, "ClockedState");
        unknowns(structure, "InitialUnknown");
        checkDerivatives(structure);
    }

    std::unordered_map<std::uint64_t, std::size_t> byReference_;
};

}  // namespace

void readVersion3(Xml const& xml, Description& description) { Reader3(xml, description).read(); }

}  // namespace modelref::fmi
