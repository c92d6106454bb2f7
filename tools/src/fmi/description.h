// The content of a model description of the FMI standard, of any version: references are resolved, defaults filled in,
// and names checked to be unique.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace modelref::fmi {

enum class Type {
    Float64,
    Float32,
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Boolean,
    String,
    Binary,
    Enumeration,
    Clock
};

enum class Causality { Parameter, StructuralParameter, CalculatedParameter, Input, Output, Local, Independent };
enum class Variability { Constant, Fixed, Tunable, Discrete, Continuous };

/// The size of a dimension, and the variable that gives it, if it isn't fixed.
struct Dimension {
    std::uint64_t size = 0;
    std::optional<std::size_t> variable;
};

/// When a clock ticks.
struct ClockInterval {
    enum class Kind { Constant, Fixed, Calculated, Tunable, Changing, Countdown, Triggered };
    Kind kind = Kind::Triggered;
    std::optional<double> interval;
    double shift = 0;
    std::optional<int> priority;
};

struct Variable {
    std::string name;
    std::uint64_t valueReference = 0;
    Type type = Type::Float64;
    Causality causality = Causality::Local;
    Variability variability = Variability::Continuous;
    std::string initial;
    std::string description;
    std::string quantity;
    std::string unit;
    std::string displayUnit;
    std::string declaredType;
    std::optional<double> min;
    std::optional<double> max;
    std::vector<Dimension> dimensions;
    std::vector<std::string> start;           ///< one text per element
    std::optional<std::size_t> derivativeOf;  ///< the position of the variable
    std::optional<std::size_t> previous;
    std::vector<std::size_t> clocks;
    ClockInterval clock;

    /// The product of the dimensions.
    std::uint64_t width() const noexcept;
};

struct Enumeration {
    std::string name;
    std::vector<std::pair<std::string, std::int64_t>> items;
};

/// One interface kind of the model, with its attributes unchanged.
struct InterfaceKind {
    std::string name;
    std::string identifier;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<std::string> sourceFiles;

    bool has(std::string const& flag) const;
};

/// An output, derivative or indicator, and the variables that it depends on, if the description lists them.
struct Unknown {
    std::size_t variable = 0;
    std::optional<std::vector<std::size_t>> dependencies;
};

struct Description {
    std::filesystem::path file;
    std::string version;
    std::string modelName;
    std::string token;
    bool isVersion3 = false;
    std::vector<InterfaceKind> kinds;
    std::vector<Enumeration> enumerations;
    std::vector<Variable> variables;
    std::vector<Unknown> outputs;
    std::vector<Unknown> derivatives;
    std::vector<Unknown> eventIndicators;  ///< of version 3, where they are variables
    std::uint64_t namelessIndicators = 0;  ///< of version 2
    std::optional<double> startTime;
    std::optional<double> stopTime;
    std::optional<double> tolerance;
    std::optional<double> stepSize;
    std::vector<std::string> warnings;

    InterfaceKind const* kind(std::string const& name) const noexcept;
};

/// Reads the description in an FMU or an XML file. Throws Failure, with file and line, if it isn't one of version 2 or
/// 3.
Description readDescription(std::filesystem::path const& file);

/// The name of a type: for numbers that of the record ("double", "int8"), else "string", "binary", "enumeration",
/// "clock".
char const* nameOf(Type type) noexcept;
bool isReal(Type type) noexcept;
bool isNumber(Type type) noexcept;

}  // namespace modelref::fmi
