// Builders: elements that don't exist yet.
#pragma once

#include <quay/zero/cell.h>
#include <quay/zero/index_set.h>
#include <quay/zero/model.h>

#include <boost/uuid/uuid.hpp>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quay::zero {

/// Base of all builders. It keeps the model, which may be set later, and the values and children that were given, by
/// property index. A builder owns its child builders, may be filled in any order, and may be used again: each `create`
/// makes a new element. Its cost depends on what was given, not on the class.
class QUAY_ZERO_API ModelElement::Builder {
    template <class T>
    struct GivenValue;

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
    IndexSet const& given() const noexcept { return given_; }

    /// Creates the element and, below it, those of the child builders, in one transaction. Only this element gets the
    /// id; a nil one is replaced by a new one. CannotCreateWithoutModel if no model is set. If it throws, nothing was
    /// created.
    ModelElement create(boost::uuids::uuid const& id);
    /// Creates an element without children that the model doesn't list, to be made a proxy.
    ModelElement createSuppressed(boost::uuids::uuid const& id);

    /// Gives a value, or adds one to several. NoSuchProperty, CannotCastIncompatibleTypes.
    void setOrAdd(meta::Property const& property, Value const& value);
    /// Gives a child, or adds one to several. If the property can't own it, NoSuchProperty, and the caller keeps the
    /// child.
    void setOrAdd(meta::Property const& property, std::unique_ptr<Builder>& child);

    // --- For element code: what the setters of a class do, by index.

    template <class T>
    void giveValue(std::uint16_t index, T value) {
        GivenValue<T>::give(*this, index, std::move(value));
    }
    template <class T>
    void appendValue(std::uint16_t index, T value) {
        GivenValue<T>::append(*this, index, std::move(value));
    }
    template <class T>
    void appendValues(std::uint16_t index, std::initializer_list<T> values) {
        GivenValue<T>::append(*this, index, values);
    }
    template <class T>
    void dropAllValues(std::uint16_t index) {
        GivenValue<T>::drop(*this, index);
    }
    /// CannotAddIncompatibleTypes unless the child is of the property's class; a child that was given before is then
    /// kept.
    void giveOneChild(std::uint16_t index, std::unique_ptr<Builder> child);
    void appendOneChild(std::uint16_t index, std::unique_ptr<Builder> child);
    void dropAllChildren(std::uint16_t index);

protected:
    Builder(Model const& model, unsigned long bits);
    explicit Builder(unsigned long bits);

    /// Constructs the element, with its defaults.
    virtual ModelElement::Impl* allocate(boost::uuids::uuid const& id) const = 0;

private:
    class Given;
    struct Children;

    /// Operations on the value of a cell whose type isn't known.
    struct CellOperations {
        void (*make)(Cell& empty);
        void (*drop)(Cell& cell) noexcept;
        void (*move)(Cell& from, Cell& empty) noexcept;
    };
    /// The cell of an index, created if nothing was given yet. It is valid until the next property is given a value.
    Cell& cellAt(std::uint16_t index, CellOperations const& operations);
    std::vector<std::unique_ptr<Builder>>& childrenAt(std::uint16_t index);
    void requireFit(std::uint16_t index, Builder const* child) const;
    ModelElement doCreate(bool suppressCascade, boost::uuids::uuid const& id);
    ModelElement make(bool suppressCascade, boost::uuids::uuid const& id);
    void cascadeCreation(ModelElement::Impl& element);

    Model model_;
    IndexSet given_;
    std::vector<Given> values_;
    std::vector<Children> children_;
    Orchestrator* orchestrator_ = nullptr;  // the run in progress, if this builder takes part in one
    ModelElement made_;                     // by this builder, in that run
};

/// Gives values of type T to a builder. Not inline: for the types below, which most properties have, a setter in user
/// code is just a call of the library.
template <class T>
struct ModelElement::Builder::GivenValue {
    static void give(Builder& builder, std::uint16_t index, T value);
    static void append(Builder& builder, std::uint16_t index, T value);
    static void append(Builder& builder, std::uint16_t index, std::initializer_list<T> values);
    static void drop(Builder& builder, std::uint16_t index);

private:
    /// The value that a property was given, of type V: a T, or several.
    template <class V>
    static V& valueAt(Builder& builder, std::uint16_t index) {
        static constexpr CellOperations operations{
            [](Cell& empty) { empty.emplace<V>(); },
            [](Cell& cell) noexcept { cell.drop<V>(); },
            [](Cell& from, Cell& empty) noexcept { from.moveTo<V>(empty); },
        };
        return builder.cellAt(index, operations).template get<V>();
    }
};

template <class T>
void ModelElement::Builder::GivenValue<T>::give(Builder& builder, std::uint16_t index, T value) {
    valueAt<T>(builder, index) = std::move(value);
}
template <class T>
void ModelElement::Builder::GivenValue<T>::append(Builder& builder, std::uint16_t index, T value) {
    valueAt<std::vector<T>>(builder, index).push_back(std::move(value));
}
template <class T>
void ModelElement::Builder::GivenValue<T>::append(Builder& builder, std::uint16_t index,
                                                  std::initializer_list<T> values) {
    auto& all = valueAt<std::vector<T>>(builder, index);
    all.insert(all.end(), values.begin(), values.end());
}
template <class T>
void ModelElement::Builder::GivenValue<T>::drop(Builder& builder, std::uint16_t index) {
    valueAt<std::vector<T>>(builder, index).clear();
}

extern template struct ModelElement::Builder::GivenValue<bool>;
extern template struct ModelElement::Builder::GivenValue<int>;
extern template struct ModelElement::Builder::GivenValue<unsigned int>;
extern template struct ModelElement::Builder::GivenValue<unsigned long>;
extern template struct ModelElement::Builder::GivenValue<double>;
extern template struct ModelElement::Builder::GivenValue<std::u16string>;
extern template struct ModelElement::Builder::GivenValue<std::string>;

/// One run of a tree of builders: its transaction, and the element that each builder made. Each builder makes one
/// element in a run, even if it is reached in several ways.
class QUAY_ZERO_API ModelElement::Builder::Orchestrator {
public:
    /// Opens the transaction of the top builder's model.
    explicit Orchestrator(Builder* top);
    /// Ends the run. Without `commit`, all that it created is rolled back.
    ~Orchestrator();
    Orchestrator(Orchestrator const&) = delete;
    Orchestrator& operator=(Orchestrator const&) = delete;

    /// Adds a child builder to the run, and gives it the model.
    void addBuilder(Builder* child);
    /// The element that the builder made in this run, or an empty handle.
    ModelElement getCreatedElement(Builder const* builder) const;
    void commit();

private:
    std::vector<Builder*> builders_;  // the top first
    Savepoint savepoint_;
};

}  // namespace quay::zero
