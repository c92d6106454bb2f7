#include "reader.h"

#include <algorithm>
#include <cstring>

#include "../failure.h"
#include "archive.h"
#include "numbers.h"

namespace modelref::fmi {

namespace {

template <class E>
using Words = std::vector<std::pair<char const*, E>>;

Words<Causality> const& causalities() {
    static Words<Causality> const all = {{"parameter", Causality::Parameter},
                                         {"structuralParameter", Causality::StructuralParameter},
                                         {"calculatedParameter", Causality::CalculatedParameter},
                                         {"input", Causality::Input},
                                         {"output", Causality::Output},
                                         {"local", Causality::Local},
                                         {"independent", Causality::Independent}};
    return all;
}

Words<Variability> const& variabilities() {
    static Words<Variability> const all = {{"constant", Variability::Constant},
                                           {"fixed", Variability::Fixed},
                                           {"tunable", Variability::Tunable},
                                           {"discrete", Variability::Discrete},
                                           {"continuous", Variability::Continuous}};
    return all;
}

template <class E>
E wordOf(Xml const& xml, pugi::xml_node const& node, char const* attribute, Words<E> const& words, E otherwise) {
    pugi::xml_attribute const found = node.attribute(attribute);
    if (!found) return otherwise;
    for (auto const& [word, value] : words) {
        if (std::strcmp(word, found.value()) == 0) return value;
    }
    xml.fail(node, std::string(attribute) + " is " + inQuotes(found.value()) + ", which isn't known");
}

bool isParameter(Causality causality) {
    return causality == Causality::Parameter || causality == Causality::StructuralParameter ||
           causality == Causality::CalculatedParameter;
}

template <class N>
bool fits(std::string const& text) {
    N value{};
    return parseInteger(text, value);
}

bool isHex(std::string const& text) {
    return text.size() % 2 == 0 && text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

bool isValue(Type type, bool isVersion3, std::string const& text) {
    double real = 0;
    float shortReal = 0;
    bool truth = false;
    switch (type) {
        case Type::Float64:
            return parseReal(text, real);
        case Type::Float32:
            return parseReal(text, shortReal);
        case Type::Int8:
            return fits<std::int8_t>(text);
        case Type::UInt8:
            return fits<std::uint8_t>(text);
        case Type::Int16:
            return fits<std::int16_t>(text);
        case Type::UInt16:
            return fits<std::uint16_t>(text);
        case Type::Int32:
            return fits<std::int32_t>(text);
        case Type::UInt32:
            return fits<std::uint32_t>(text);
        case Type::Enumeration:
            return isVersion3 ? fits<std::int64_t>(text) : fits<std::int32_t>(text);
        case Type::Int64:
            return fits<std::int64_t>(text);
        case Type::UInt64:
            return fits<std::uint64_t>(text);
        case Type::Boolean:
            return parseBoolean(text, truth);
        case Type::Binary:
            return isHex(text);
        default:
            return true;
    }
}

}  // namespace

void Reader::read() {
    readHead();
    if (pugi::xml_node const definitions = xml_.child(xml_.root(), "TypeDefinitions")) readTypes(definitions);
    readVariables();
    if (pugi::xml_node const structure = xml_.child(xml_.root(), "ModelStructure")) readStructure(structure);
}

void Reader::readHead() {
    pugi::xml_node const root = xml_.root();
    d_.modelName = xml_.required(root, "modelName");
    d_.token = root.attribute(d_.isVersion3 ? "instantiationToken" : "guid").value();
    for (char const* name : {"ModelExchange", "CoSimulation", "ScheduledExecution"}) {
        if (pugi::xml_node const kind = xml_.child(root, name)) readKind(kind);
    }
    if (d_.kinds.empty()) warn(root, "there is no interface kind: neither model exchange nor co-simulation");
    pugi::xml_node const experiment = xml_.child(root, "DefaultExperiment");
    d_.startTime = xml_.number(experiment, "startTime");
    d_.stopTime = xml_.number(experiment, "stopTime");
    d_.tolerance = xml_.number(experiment, "tolerance");
    d_.stepSize = xml_.number(experiment, "stepSize");
}

void Reader::readKind(pugi::xml_node const& node) {
    InterfaceKind kind;
    kind.name = node.name();
    kind.identifier = xml_.required(node, "modelIdentifier");
    for (pugi::xml_attribute const a : node.attributes()) kind.attributes.emplace_back(a.name(), a.value());
    if (kind.attributes.size() > kMostAttributes) xml_.fail(node, "<" + kind.name + "> has too many attributes");
    for (pugi::xml_node const file : node.child("SourceFiles").children("File")) {
        kind.sourceFiles.push_back(xml_.required(file, "name"));
    }
    d_.kinds.push_back(std::move(kind));
}

void Reader::readVariables() {
    pugi::xml_node const list = xml_.child(xml_.root(), "ModelVariables");
    if (!list) xml_.fail(xml_.root(), "there are no <ModelVariables>");
    std::vector<pugi::xml_node> nodes;
    std::unordered_set<std::string> names;
    for (pugi::xml_node const node : list.children()) {
        if (node.type() != pugi::node_element) continue;
        Variable variable;
        variable.name = xml_.required(node, "name");
        if (!names.insert(variable.name).second) {
            xml_.fail(node, "there is a second variable " + inQuotes(variable.name));
        }
        for (pugi::xml_node const alias : node.children("Alias")) {
            std::string name = xml_.required(alias, "name");
            if (!names.insert(name).second) xml_.fail(alias, "there is a second variable " + inQuotes(name));
        }
        xml_.required(node, "valueReference");
        variable.valueReference = *xml_.natural(node, "valueReference");
        if (variable.valueReference > std::numeric_limits<std::uint32_t>::max()) {
            xml_.fail(node, "valueReference has more than 32 bits");
        }
        enterReference(node, variable.valueReference, d_.variables.size());
        readVariable(node, variable);
        nodes.push_back(node);
        d_.variables.push_back(std::move(variable));
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) resolve(nodes[i], d_.variables[i]);
    for (std::size_t i = 0; i < nodes.size(); ++i) checkStart(nodes[i], d_.variables[i]);
}

void Reader::readCommon(pugi::xml_node const& node, Variable& variable) const {
    variable.description = node.attribute("description").value();
    variable.initial = node.attribute("initial").value();
    variable.causality = wordOf(xml_, node, "causality", causalities(), Causality::Local);
    Variability const usual = isParameter(variable.causality) ? Variability::Tunable
                              : isReal(variable.type)         ? Variability::Continuous
                                                              : Variability::Discrete;
    variable.variability = wordOf(xml_, node, "variability", variabilities(), usual);
}

pugi::xml_node Reader::holderOf(pugi::xml_node const& node, char const* attribute) const {
    if (node.attribute(attribute)) return node;
    auto const found = types_.find(node.attribute("declaredType").value());
    return found == types_.end() ? pugi::xml_node() : found->second.attributes;
}

void Reader::readTyped(pugi::xml_node const& node, Variable& variable) const {
    variable.declaredType = node.attribute("declaredType").value();
    if (!variable.declaredType.empty()) {
        auto const found = types_.find(variable.declaredType);
        if (found == types_.end()) {
            xml_.fail(node, "there is no type " + inQuotes(variable.declaredType));
        }
        if (found->second.type != variable.type) {
            xml_.fail(node, "the type " + inQuotes(variable.declaredType) + " is one of another kind");
        }
    } else if (variable.type == Type::Enumeration) {
        xml_.fail(node, "an enumeration needs a declaredType");
    }
    for (auto const& [attribute, member] : {std::pair{"quantity", &Variable::quantity},
                                            {"unit", &Variable::unit},
                                            {"displayUnit", &Variable::displayUnit}}) {
        variable.*member = holderOf(node, attribute).attribute(attribute).value();
    }
    if (isNumber(variable.type) || variable.type == Type::Enumeration) {
        variable.min = xml_.number(holderOf(node, "min"), "min");
        variable.max = xml_.number(holderOf(node, "max"), "max");
    }
    bool const isEmptyRange = variable.min && variable.max && *variable.min > *variable.max;
    if (isEmptyRange) xml_.fail(node, "min is above max");
}

void Reader::readEnumeration(std::string const& name, pugi::xml_node const& node) {
    Enumeration result;
    result.name = name;
    std::unordered_set<std::string> labels;
    for (pugi::xml_node const item : node.children("Item")) {
        std::string label = xml_.required(item, "name");
        std::int64_t value = 0;
        if (!parseInteger(xml_.required(item, "value"), value)) xml_.fail(item, "an item's value is no integer");
        if (!labels.insert(label).second) xml_.fail(item, "there is a second item " + inQuotes(label));
        items_[name].insert(value);
        result.items.emplace_back(std::move(label), value);
    }
    if (result.items.empty()) xml_.fail(node, "the enumeration " + inQuotes(name) + " has no items");
    d_.enumerations.push_back(std::move(result));
}

void Reader::declare(pugi::xml_node const& node, std::string const& name, DeclaredType type) {
    if (!types_.emplace(name, type).second) xml_.fail(node, "there is a second type " + inQuotes(name));
}

void Reader::checkDerivatives(pugi::xml_node const& node) const {
    std::unordered_set<std::size_t> listed;
    std::unordered_set<std::size_t> states;
    for (Unknown const& unknown : d_.derivatives) {
        Variable const& variable = d_.variables[unknown.variable];
        std::string const name = inQuotes(variable.name);
        if (!variable.derivativeOf) xml_.fail(node, name + " is listed as a derivative and is none");
        if (!listed.insert(unknown.variable).second) xml_.fail(node, name + " is listed as a derivative twice");
        if (!states.insert(*variable.derivativeOf).second) {
            xml_.fail(node, name + " is a second derivative of " + inQuotes(d_.variables[*variable.derivativeOf].name));
        }
    }
}

void Reader::checkStart(pugi::xml_node const& node, Variable const& variable) {
    for (std::string const& text : variable.start) {
        if (!isValue(variable.type, d_.isVersion3, text)) {
            xml_.fail(node, "the start of " + inQuotes(variable.name) + " is " + inQuotes(text) +
                                ", which is no value of " + nameOf(variable.type));
        }
    }
    if (!variable.start.empty() && variable.start.size() != variable.width()) {
        warn(node, inQuotes(variable.name) + " has " + std::to_string(variable.width()) + " elements and " +
                       std::to_string(variable.start.size()) + " start values, which are recorded as a row");
    }
    if (variable.type != Type::Enumeration) return;
    auto const& items = items_.at(variable.declaredType);
    for (std::string const& text : variable.start) {
        std::int64_t value = 0;
        parseInteger(text, value);
        if (!items.contains(value)) {
            warn(node, "the start of " + inQuotes(variable.name) + " is " + text + ", which is no item of " +
                           inQuotes(variable.declaredType));
        }
    }
}

Description readDescription(std::filesystem::path const& file) {
    Xml const xml(file.string(), readDescriptionText(file), "fmiModelDescription");
    Description description;
    description.file = file;
    description.version = xml.required(xml.root(), "fmiVersion");
    if (description.version.starts_with("2.")) {
        readVersion2(xml, description);
    } else if (description.version.starts_with("3.")) {
        description.isVersion3 = true;
        readVersion3(xml, description);
    } else {
        xml.fail(xml.root(), "version " + inQuotes(description.version) +
                                 " of the FMI standard isn't read; versions 2.x and 3.x are");
    }
    return description;
}

}  // namespace modelref::fmi
