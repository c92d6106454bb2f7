// Finds references by text or number whose target doesn't exist. Elements of records refer to one another in no other
// way, and writing them checks nothing.
#pragma once

#include <ModelRefInfoRepo/Handles.h>
#include <quay/zero/primitive_collection.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "elements.h"

namespace modelref {

struct Finding {
    std::string path;
    std::string message;
};

/// The checks of one root.
class Checks {
public:
    explicit Checks(ModelRefInfoRepo::ModelRefInfoRoot const& root);

    /// Runs all checks, in the order of the schema's domains.
    std::vector<Finding> run();

private:
    using Root = ModelRefInfoRepo::ModelRefInfoRoot;
    using Numbers = quay::zero::PrimitiveSequence<int>;
    using Names = std::set<std::u16string>;

    void checkPortGroups();
    void checkPortGroup(ModelRefInfoRepo::DataPortGroup const& group);
    void checkFunctionCallGroup(ModelRefInfoRepo::FcnCallPortGroup const& group);
    void checkPortMaps();
    void checkSameRateGroups();
    void checkMessages();
    void checkFunctions();
    void checkArguments(ModelRefInfoRepo::CompFunctionArgs const& arguments);
    void checkServices();
    void checkCallers();
    void checkRates();
    void checkUnionRates();
    std::size_t sampleTimes() const;
    void checkParameters();
    void checkTypes();
    void checkStates();
    void checkDataStores();

    void report(ModelElement const& element, std::string const& property, std::string const& message);
    /// Reports a number that isn't below `count`, the number of things of that kind.
    void number(ModelElement const& element, std::string const& property, std::int64_t value, std::size_t count,
                char const* kind);
    void numbers(ModelElement const& element, std::string const& property, Numbers const& values, std::size_t count,
                 char const* kind);
    /// Reports a text that isn't among the known names; an empty text is no reference.
    void name(ModelElement const& element, std::string const& property, std::u16string const& text, Names const& known,
              char const* kind);
    void name(ModelElement const& element, std::string const& property, std::string const& text, Names const& known,
              char const* kind);

    Root root_;
    std::size_t inports_;
    std::size_t outports_;
    std::size_t groups_;
    std::size_t rates_;
    Names functions_;
    Names parameters_;
    Names enumerations_;
    Names stateOwners_;
    Paths paths_;
    std::vector<Finding> findings_;
};

}  // namespace modelref
