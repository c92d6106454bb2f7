// Version 2 of the FMI standard: <ScalarVariable> with an element for its type inside, references by position from 1.
#include <array>
#include <optional>
#include <unordered_map>

#include "../failure.h"
#include "reader.h"

namespace modelref::fmi {

namespace {

constexpr std::array<std::pair<char const*, Type>, 5> kTypes = {{{"Real", Type::Float64},
                                                                 {"Integer", Type::Int32},
                                                                 {"Boolean", Type::Boolean},
                                                                 {"String", Type::String},
                                                                 {"Enumeration", Type::Enumeration}}};

class Reader2 final : public Reader {
public:
    using Reader::Reader;

private:
    /// The child element that gives the type, in an element that has a name.
    std::pair<pugi::xml_node, Type> typed(pugi::xml_node const& node) const {
        std::pair<pugi::xml_node, Type> result;
        for (auto const& [name, type] : kTypes) {
            pugi::xml_node const found = xml_.child(node, name);
            if (!found) continue;
            if (result.first) xml_.fail(found, std::string("<") + node.name() + "> has a second type");
            result = {found, type};
        }
        if (!result.first) xml_.fail(node, std::string("<") + node.name() + "> has no known type");
        return result;
    }

    std::size_t positionOf(pugi::xml_node const& node, char const* attribute, std::uint64_t number) const {
        if (number < 1 || number > d_.variables.size()) {
            xml_.fail(node, std::string(attribute) + " is " + std::to_string(number) + ", and there are " +
                                std::to_string(d_.variables.size()) + " variables");
        }
        return static_cast<std::size_t>(number - 1);
    }

    void readTypes(pugi::xml_node const& definitions) override {
        for (pugi::xml_node const node : definitions.children("SimpleType")) {
            std::string const name = xml_.required(node, "name");
            auto const [attributes, type] = typed(node);
            declare(node, name, {type, attributes});
            if (type == Type::Enumeration) readEnumeration(name, attributes);
        }
    }

    void enterReference(pugi::xml_node const&, std::uint64_t, std::size_t) override {}  // variables may be aliases

    void readVariable(pugi::xml_node const& node, Variable& variable) override {
        if (std::string(node.name()) != "ScalarVariable") {
            xml_.fail(node, "expected a <ScalarVariable>, found <" + std::string(node.name()) + ">");
        }
        auto const [attributes, type] = typed(node);
        variable.type = type;
        readCommon(node, variable);
        readTyped(attributes, variable);
        // In version 2 "continuous" is the default for every type.
        if (variable.variability == Variability::Continuous && type != Type::Float64) {
            variable.variability = Variability::Discrete;
        }
        if (pugi::xml_attribute const start = attributes.attribute("start")) variable.start.emplace_back(start.value());
    }

    void resolve(pugi::xml_node const& node, Variable& variable) override {
        pugi::xml_node const attributes = typed(node).first;
        if (auto const number = xml_.natural(attributes, "derivative")) {
            variable.derivativeOf = positionOf(attributes, "derivative", *number);
        }
    }

    std::vector<Unknown> unknowns(pugi::xml_node const& list) const {
        std::vector<Unknown> result;
        for (pugi::xml_node const node : list.children("Unknown")) {
            xml_.required(node, "index");
            Unknown unknown;
            unknown.variable = positionOf(node, "index", *xml_.natural(node, "index"));
            if (node.attribute("dependencies")) {
                unknown.dependencies.emplace();
                for (std::uint64_t const number : xml_.naturals(node, "dependencies")) {
                    unknown.dependencies->push_back(positionOf(node, "dependencies", number));
                }
            }
            result.push_back(std::move(unknown));
        }
        return result;
    }

    void readStructure(pugi::xml_node const& structure) override {
        d_.outputs = unknowns(xml_.child(structure, "Outputs"));
        d_.derivatives = unknowns(xml_.child(structure, "Derivatives"));
        unknowns(xml_.child(structure, "InitialUnknowns"));  // not recorded, but the references must be valid
        checkDerivatives(structure.child("Derivatives"));
    }
};

}  // namespace

void readVersion2(Xml const& xml, Description& description) {
    description.namelessIndicators = xml.natural(xml.root(), "numberOfEventIndicators").value_or(0);
    if (description.namelessIndicators > std::numeric_limits<std::int32_t>::max()) {
        xml.fail(xml.root(), "numberOfEventIndicators is too large");
    }
    Reader2(xml, description).read();
}

}  // namespace modelref::fmi
