// Builders: elements that don't exist yet.
#pragma once

#include <quay/zero/cell.h>
#include <quay/zero/model.h>

#include <boost/container/deque.hpp>
#include <boost/dynamic_bitset.hpp>
#include <boost/uuid/uuid.hpp>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace quay::zero {

/// Base of all builders: the model, which may come later, and what was given, by property index. A builder owns its
/// child builders, may be filled in any order, and may be used again: each `create` is a run of its own and makes a new
/// element. Its cost follows what was given, not the class.
class QUAY_ZERO_API ModelElement::Builder {
public:
    class Orchestrator;

    virtual ~Builder();
    Builder(Builder const&) = delete;
    Builder& operator=(Builder const&) = delete;

    virtual meta::Class const& getMetaClass() const = 0;
    virtual ClassTable const& classTable() const = 0;

    Model const& getModel() const noexcept { return model_; }
    /// Gives the builder, and all builders added to it, the model.
    void setModel(Model const& model);
    /// The properties that were given a value or a child, also one that was taken back.
    boost::dynamic_bitset<unsigned long> const& given() const noexcept { return given_; }

    /// Creates the element, and below it what the child builders stand for, in one transaction; only the top has the
    /// id, and a nil one draws a fresh one. CannotCreateWithoutModel; what fails leaves no trace.
    ModelElement create(boost::uuids::uuid const& id);
    /// An element that the model doesn't list and that has no children: for what stands for another element.
    ModelElement createSuppressed(boost::uuids::uuid const& id);

    /// Gives a value, or adds one to several. NoSuchProperty, CannotCastIncompatibleTypes.
    void setOrAdd(meta::Property const& property, Value const& value);
    /// Gives a child, or adds one to several. What the property can't own stays with the caller, with NoSuchProperty.
    void setOrAdd(meta::Property const& property, std::unique_ptr<Builder>& child);

    // --- For element code: what the setters of a class do, by index.

    template <class T>
    void giveValue(std::uint16_t index, T value) {
        Given& given = valueAt<T>(index);
        given.value.get<T>() = std::move(value);
    }
    template <class T>
    void appendValue(std::uint16_t index, T value) {
        valueAt<std::vector<T>>(index).value.template get<std::vector<T>>().push_back(std::move(value));
    }
    template <class T>
    void appendValues(std::uint16_t index, std::initializer_list<T> values) {
        auto& all = valueAt<std::vector<T>>(index).value.template get<std::vector<T>>();
        all.insert(all.end(), values.begin(), values.end());
    }
    template <class T>
    void dropAllValues(std::uint16_t index) {
        valueAt<std::vector<T>>(index).value.template get<std::vector<T>>().clear();
    }
    /// CannotAddIncompatibleTypes unless the child is of the property's class; what was given before then stays.
    void giveOneChild(std::uint16_t index, std::unique_ptr<Builder> child);
    void appendOneChild(std::uint16_t index, std::unique_ptr<Builder> child);
    void dropAllChildren(std::uint16_t index);

protected:
    Builder(Model const& model, unsigned long bits);
    explicit Builder(unsigned long bits);

    /// Constructs the element, with its defaults.
    virtual ModelElement::Impl* allocate(boost::uuids::uuid const& id) const = 0;

private:
    struct Given {
        std::uint16_t index;
        void (*drop)(Cell&);
        Cell value;
    };
    struct Children {
        std::uint16_t index;
        std::vector<std::unique_ptr<Builder>> builders;
    };

    template <class T>
    Given& valueAt(std::uint16_t index) {
        if (Given* const present = findValue(index)) return *present;
        values_.emplace_back();
        Given& made = values_.back();
        made.drop = nullptr;
        made.index = index;
        try {
            made.value.emplace<T>();
        } catch (...) {
            values_.pop_back();
            throw;
        }
        made.drop = [](Cell& cell) { cell.drop<T>(); };
        given_.set(index);
        return made;
    }
    Given* findValue(std::uint16_t index) noexcept;
    std::vector<std::unique_ptr<Builder>>& childrenAt(std::uint16_t index);
    void requireFit(std::uint16_t index, Builder const* child) const;
    ModelElement doCreate(bool suppressCascade, boost::uuids::uuid const& id);
    ModelElement make(bool suppressCascade, boost::uuids::uuid const& id);
    void cascadeCreation(ModelElement::Impl& element);

    Model model_;
    boost::dynamic_bitset<unsigned long> given_;
    boost::container::deque<Given> values_;  // cells don't move; allocates nothing while it is empty
    std::vector<Children> children_;
    Orchestrator* orchestrator_ = nullptr;  // of the run that this builder takes part in
    ModelElement made_;                     // in that run
};

/// One run of a tree of builders: its transaction, and the element of each builder, so that a builder makes one element
/// in a run, by however many ways it is reached.
class QUAY_ZERO_API ModelElement::Builder::Orchestrator {
public:
    /// Opens the transaction of the top builder's model.
    explicit Orchestrator(Builder* top);
    /// Ends the run; without `commit`, nothing of it was ever made.
    ~Orchestrator();
    Orchestrator(Orchestrator const&) = delete;
    Orchestrator& operator=(Orchestrator const&) = delete;

    /// A child takes part: it gets the model.
    void addBuilder(Builder* child);
    /// The element that the builder made in this run, or an empty handle.
    ModelElement getCreatedElement(Builder const* builder) const;
    void commit();

private:
    std::vector<Builder*> builders_;  // the top first
    Savepoint savepoint_;
};

}  // namespace quay::zero
