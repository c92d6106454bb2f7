// References by text and number that point nowhere. Records name one another only so, and nothing checks it when they
// are written.
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

    /// Everything, in the order of the schema's domains.
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
    /// A number that must be below `count`, of things of that kind.
    void number(ModelElement const& element, std::string const& property, std::int64_t value, std::size_t count,
                char const* kind);
    void numbers(ModelElement const& element, std::string const& property, Numbers const& values, std::size_t count,
                 char const* kind);
    /// A text that must be among the known ones; an empty one names nothing.
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
