// A model to which random operations are applied, compared step by step with the reference model.
#pragma once

#include "../../common/expect.h"
#include "../../common/random.h"
#include "reference.h"

#include <quay/zero/change_set.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/model.h>
#include <quay/zero/primitive_collection.h>

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace records {

inline constexpr auto const& kPublic = quay::zero::ReflectionPrivateTag::PUBLIC_ACCESS;

enum class Kind : std::uint8_t {
    Act,         // write or change a property, by reflection
    ActAgain,    // the same property of the same element again
    Particular,  // an operation that only one test's classes have
    Create,
    CreateUnderUsedId,
    Refused,
    Destroy,
    PutBack,
    Begin,
    BeginSystem,
    Commit,
    Rollback,
    CommitOuter,
    RollbackOuter,
    Undo,
    Redo,
    Limit,
    Find,
    Hold,
    LetGo
};

struct Operation {
    Kind kind;
    std::uint8_t a, b, c, d;
};

inline std::ostream& operator<<(std::ostream& out, Operation const& o) {
    return out << int(o.kind) << '(' << int(o.a) << ' ' << int(o.b) << ' ' << int(o.c) << ' ' << int(o.d) << ')';
}

class World {
public:
    World(Plan const& plan, std::size_t limit, bool listening);
    virtual ~World();
    World(World const&) = delete;
    World& operator=(World const&) = delete;

    void run(Operation const& o);
    void run(std::vector<Operation> const& operations);
    void compare();

protected:
    void create(int kind);
    virtual void actParticularly(Operation const& /*o*/) {}

    Slot const& slotAt(int s) const { return plan_.slotAt(s); }
    std::vector<int> const& slotsOf(int n) const { return plan_.kindAt(reference_.at(n).kind).slots; }
    bool any() const { return !reference_.order().empty(); }
    bool full() const { return reference_.order().size() >= 12; }
    int pick(std::uint8_t by) const { return reference_.order()[by % reference_.order().size()]; }
    /// An element for which `fits` holds, or -1.
    template <class Fits>
    int pickIf(std::uint8_t by, Fits&& fits) const {
        std::vector<int> fitting;
        for (int n : reference_.order()) {
            if (fits(n)) fitting.push_back(n);
        }
        return fitting.empty() ? -1 : fitting[by % fitting.size()];
    }
    int pickChild(Slot const& slot, std::uint8_t by) const {
        return pickIf(by, [&](int n) { return plan_.fits(reference_.at(n).kind, slot); });
    }
    /// Looked up on each call, so that no handle keeps the element alive and the index by id exists only if it was
    /// needed.
    quay::zero::ModelElement element(int n) const;
    static quay::zero::Value valueOf(Slot const& s, std::uint8_t by);
    quay::zero::ReferenceCollection& children(quay::zero::ModelElement const& e, int s) const;

    /// Runs the operation on the model, then on the reference. A failure must not change the model.
    template <class F, class G>
    void both(F&& inModel, G&& inReference) {
        std::string const failure = failureOf(inModel);
        std::string expected;
        if constexpr (std::is_void_v<decltype(inReference())>) {
            inReference();
        } else {
            expected = inReference();
        }
        RC_ASSERT(failure == expected);
        if (!failure.empty()) compare();
    }
    template <class F>
    void refused(std::string const& expected, F&& f) {
        both(f, [&] { return expected; });
    }
    /// Enters the first element of the model that the reference doesn't have.
    int enter(int kind);

    Plan const& plan_;
    Reference reference_{plan_};
    quay::zero::Model model_ = quay::zero::Model::create();

private:
    int numberOf(boost::uuids::uuid const& id) const;
    std::string text() const;
    void hear(quay::zero::ChangeSet const& c);
    void step(Operation const& o);
    void createUnderUsedId(Operation const& o);
    void destroy(Operation const& o, int n);
    void putBack(Operation const& o, int n);
    void endSavepoint(std::size_t number, bool commit);
    void replay(bool redo);
    void act(Operation const& o, int n, int s);
    void actOnValue(Operation const& o, int n, int s);
    void actOnValues(Operation const& o, int n, int s);
    void assign(Operation const& o, int n, int s);
    void actOnChild(Operation const& o, int n, int s);
    void actOnChildren(Operation const& o, int n, int s);
    void refuse(Operation const& o, int n, int s);

    std::map<int, boost::uuids::uuid> ids_;
    std::map<int, quay::zero::ModelElement::Impl*> identity_;
    std::map<int, quay::zero::ModelElement> held_;
    Reference::Report heard_;
    bool listening_;
    Operation last_{};
    std::vector<std::optional<quay::zero::Transaction>> open_;
};

}  // namespace records

namespace rc {

template <>
struct Arbitrary<records::Operation> {
    static Gen<records::Operation> arbitrary() {
        using O = records::Operation;
        using K = records::Kind;
        auto const kinds = gen::weightedElement<K>(
            {{30, K::Act},    {30, K::ActAgain}, {24, K::Particular}, {8, K::Create},        {2, K::CreateUnderUsedId},
             {3, K::Refused}, {3, K::Destroy},   {4, K::PutBack},     {9, K::Begin},         {1, K::BeginSystem},
             {5, K::Commit},  {2, K::Rollback},  {1, K::CommitOuter}, {1, K::RollbackOuter}, {6, K::Undo},
             {4, K::Redo},    {1, K::Limit},     {3, K::Find},        {2, K::Hold},          {1, K::LetGo}});
        return gen::build<O>(gen::set(&O::kind, kinds), gen::set(&O::a), gen::set(&O::b), gen::set(&O::c),
                             gen::set(&O::d));
    }
};

}  // namespace rc
