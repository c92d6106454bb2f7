// Sequences and sets of plain values.
#pragma once

#include <quay/zero/collection.h>
#include <quay/zero/position.h>
#include <quay/zero/value.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <set>
#include <vector>

namespace quay::zero {

/// Access to a sequence of values by position, for scripts and generic code. std::out_of_range for a position out of
/// range.
class QUAY_ZERO_API GenericPrimitiveSequenceInterface {
public:
    static constexpr unsigned long NONE = static_cast<unsigned long>(-1);

    virtual Value genericAt(unsigned long position) const = 0;
    virtual void genericReplace(Value const& value, unsigned long position) = 0;
    virtual void genericInsert(Value const& value, unsigned long position) = 0;
    virtual void genericRemoveAt(unsigned long position) = 0;
    virtual unsigned long genericIndexOf(Value const& value) const = 0;

    GenericPrimitiveSequenceInterface(GenericPrimitiveSequenceInterface const&) = delete;
    GenericPrimitiveSequenceInterface& operator=(GenericPrimitiveSequenceInterface const&) = delete;

protected:
    GenericPrimitiveSequenceInterface() = default;
    ~GenericPrimitiveSequenceInterface() = default;
};

/// Base of sequences and sets of values. A value of another type is CannotCastIncompatibleTypes.
class QUAY_ZERO_API AbstractPrimitiveCollection : public RecordedCollection {
public:
    enum class Kind { Sequence, Set };

    virtual std::vector<Value> getAllValues() const = 0;
    virtual void genericAdd(Value const& value) = 0;
    virtual void genericRemove(Value const& value) = 0;
    /// The interface of a sequence by position; null for a set.
    virtual GenericPrimitiveSequenceInterface* getGenericInterface() const noexcept { return nullptr; }
    virtual Kind getKind() const noexcept = 0;

protected:
    using RecordedCollection::RecordedCollection;

    /// The type of the property that the collection serves, or another one if it serves none.
    meta::Type propertyTypeOr(meta::Type const& other) const;
};

/// The meta type of a value type.
template <class T>
meta::Type typeOfValue() {
    if constexpr (PrimitiveValue<T>) {
        return meta::StandardTypes::of<T>();
    } else {
        return TypeOf<T>::type();
    }
}

/// The base of sequences and sets of T: the container and the exchange of its whole content.
template <class T, class Container, class Self>
class PrimitiveCollection : public AbstractPrimitiveCollection {
public:
    using value_type = T;
    using const_iterator = typename Container::const_iterator;
    using iterator = const_iterator;

    bool empty() const noexcept final { return values_.empty(); }
    std::size_t size() const noexcept final { return values_.size(); }
    const_iterator begin() const noexcept { return values_.begin(); }
    const_iterator end() const noexcept { return values_.end(); }
    bool contains(T const& value) const { return std::find(begin(), end(), value) != end(); }

    meta::Type getCollectionType() const final { return typeOfValue<T>(); }
    void clear() final {
        Operation operation(*this);
        modifying();
        if (!values_.empty()) swapContent({});
        operation.commit();
    }
    void copyContents(AbstractOwnedCollection const& other) final { copyValues(static_cast<Self const&>(other)); }
    void basicCopyContents(AbstractOwnedCollection const* other) final {
        modifying();
        swapContent(other == nullptr ? Container() : Container(static_cast<Self const&>(*other).values_));
    }
    void copyValues(Self const& other) {
        Operation operation(*this);
        modifying();
        swapContent(Container(other.values_));
        operation.commit();
    }
    /// Replaces the content by that of a container, in one change.
    void assign(Container&& values) {
        Operation operation(*this);
        modifying();
        swapContent(std::move(values));
        operation.commit();
    }
    void assignValue(Value const& value) final {
        Container values;
        if (value.pointsAtCollection()) {
            auto const* const other =
                dynamic_cast<AbstractPrimitiveCollection const*>(value.getCollection<AbstractOwnedCollection>());
            if (other == nullptr) value.reportIncompatible();
            for (Value const& v : other->getAllValues()) values.insert(values.end(), v.getValue<T>());
        } else if (value.getType() == valueType() && value.getFlags() == ValueFlags::Sequence) {
            values = contentOf<std::vector<T>>(value);
        } else if (value.getType() == valueType() && value.getFlags() == ValueFlags::Set) {
            values = contentOf<std::set<T>>(value);
        } else {
            value.reportIncompatible();
        }
        assign(std::move(values));
    }
    /// Replaces the content and records nothing: for a collection that is being built.
    void assignUnrecorded(Container&& values) noexcept { values_.swap(values); }

    std::vector<Value> getAllValues() const final {
        std::vector<Value> result;
        result.reserve(values_.size());
        meta::Type const type = valueType();
        for (T const& value : values_) result.emplace_back(type, value, ValueFlags::One);
        return result;
    }
    std::unique_ptr<AbstractOwnedCollection> detachedCopy() const final {
        auto copy = std::make_unique<Self>(getCollectionProperty());
        copy->values_ = values_;
        return copy;
    }
    bool sameByRule(AbstractOwnedCollection const& old) const final {
        Container const& before = static_cast<Self const&>(old).values_;
        if (before.size() != values_.size() || before.size() > 1) return false;
        return before.empty() || *before.begin() == *values_.begin();
    }

protected:
    using AbstractPrimitiveCollection::AbstractPrimitiveCollection;

    meta::Type valueType() const { return propertyTypeOr(typeOfValue<T>()); }
    /// The content of the container in a value; empty if the value has no payload.
    template <class From>
    static Container contentOf(Value const& value) {
        auto const* const from = static_cast<From const*>(value.data());
        return from == nullptr ? Container() : Container(from->begin(), from->end());
    }
    /// Values that a step took out of the collection, or memory reserved for them.
    struct Kept : StepContent {
        Container values;
    };

    void swapContent(Container&& content) {
        if (recording()) {
            auto kept = std::make_unique<Kept>();
            reserveStep();
            kept->values.swap(values_);
            record(ContentStep{this, std::move(kept)});
        }
        values_.swap(content);
    }
    // NOLINTNEXTLINE(bugprone-exception-escape): allocators and orders that can't differ are swapped without throwing
    void exchangeContent(ContentStep& step) noexcept final { values_.swap(static_cast<Kept&>(*step.content).values); }

    Container values_;
};

/// The container of a sequence of T. That of bool, which holds each value so that it can be read by reference, is
/// defined in <quay/zero/bool_sequence.h>.
template <class T>
struct SequenceContainer {
    using Type = std::vector<T>;
};
template <>
struct SequenceContainer<bool>;

/// The values of a "sequence" property: ordered, duplicates allowed unless the property is unique.
template <class T>
class PrimitiveSequence final
    : public PrimitiveCollection<T, typename SequenceContainer<T>::Type, PrimitiveSequence<T>>,
      public GenericPrimitiveSequenceInterface {
    using Container = typename SequenceContainer<T>::Type;
    using Base = PrimitiveCollection<T, Container, PrimitiveSequence<T>>;
    using Operation = AbstractOwnedCollection::Operation;

public:
    using const_iterator = typename Base::const_iterator;

    PrimitiveSequence(ModelElement::Impl* owner, std::uint16_t index) noexcept : Base(owner, index) {}
    explicit PrimitiveSequence(meta::Property const& property) : Base(property) {}
    /// A detached sequence; a unique one ignores duplicates.
    PrimitiveSequence(meta::Property const& property, bool unique) : Base(property), unique_(unique) {}

    T const& operator[](std::size_t position) const noexcept { return this->values_[position]; }
    T const& at(std::size_t position) const {
        requirePosition(position, this->size());
        return this->values_[position];
    }
    bool isUnique() const noexcept { return unique_; }

    /// In a unique sequence, a value that it has already is ignored.
    void push_back(T const& value) { insertAt(this->size(), value); }
    const_iterator insert(const_iterator position, T const& value) {
        return this->begin() + static_cast<std::ptrdiff_t>(insertAt(indexOfPosition(position), value));
    }
    const_iterator erase(const_iterator position) {
        std::size_t const at = indexOfPosition(position);
        eraseAt(at);
        return this->begin() + static_cast<std::ptrdiff_t>(at);
    }
    /// Returns the position of the value. A unique sequence that has the value already isn't changed.
    std::size_t insertAt(std::size_t position, T const& value) {
        requirePosition(position, this->size() + 1);
        if (unique_) {
            std::size_t const found = indexOf(value);
            if (found != NONE) return found;
        }
        T made(value);
        Operation operation(*this);
        put(position, std::move(made));
        operation.commit();
        return position;
    }
    void eraseAt(std::size_t position) {
        requirePosition(position, this->size());
        Operation operation(*this);
        take(position);
        operation.commit();
    }
    void replaceAt(std::size_t position, T const& value) {
        requirePosition(position, this->size());
        if (unique_ && indexOf(value) != NONE) return;
        T made(value);
        Operation operation(*this);
        replace(position, std::move(made));
        operation.commit();
    }
    std::size_t indexOf(T const& value) const {
        auto const found = std::find(this->begin(), this->end(), value);
        return found == this->end() ? NONE : indexOfPosition(found);
    }

    AbstractPrimitiveCollection::Kind getKind() const noexcept override {
        return AbstractPrimitiveCollection::Kind::Sequence;
    }
    void genericAdd(Value const& value) override { push_back(value.getValue<T>()); }
    void genericRemove(Value const& value) override {
        std::size_t const found = indexOf(value.getValue<T>());
        if (found != NONE) eraseAt(found);
    }
    GenericPrimitiveSequenceInterface* getGenericInterface() const noexcept override {
        return const_cast<PrimitiveSequence*>(this);
    }
    Value genericAt(unsigned long position) const override {
        return {this->valueType(), at(position), ValueFlags::One};
    }
    void genericReplace(Value const& value, unsigned long position) override {
        replaceAt(position, value.getValue<T>());
    }
    void genericInsert(Value const& value, unsigned long position) override { insertAt(position, value.getValue<T>()); }
    void genericRemoveAt(unsigned long position) override { eraseAt(position); }
    unsigned long genericIndexOf(Value const& value) const override { return indexOf(value.getValue<T>()); }

    // NOLINTNEXTLINE(bugprone-exception-escape): memory for the values is reserved, and moving doesn't throw
    void exchangeRun(RunStep& step) noexcept override {
        auto* const kept = static_cast<Kept*>(step.content.get());
        auto const from = slot(step.position);
        if (step.isIn) {
            auto const to = from + static_cast<std::ptrdiff_t>(step.count);
            if (kept != nullptr) kept->values.assign(std::make_move_iterator(from), std::make_move_iterator(to));
            this->values_.erase(from, to);
        } else {
            this->values_.insert(from, std::make_move_iterator(kept->values.begin()),
                                 std::make_move_iterator(kept->values.end()));
            kept->values.clear();
        }
        step.isIn = !step.isIn;
    }
    void exchangeMember(MemberStep& step) noexcept override {
        std::swap(*slot(step.position), static_cast<Kept&>(*step.content).values.front());
    }
    void prepareRun(RunStep& step) override {
        if (step.content == nullptr) step.content = roomFor(step.count);
    }

private:
    using Kept = typename Base::Kept;

    static std::unique_ptr<Kept> roomFor(std::size_t count) {
        auto kept = std::make_unique<Kept>();
        kept->values.reserve(count);
        return kept;
    }
    std::size_t indexOfPosition(const_iterator position) const noexcept {
        return static_cast<std::size_t>(position - this->begin());
    }
    typename Container::iterator slot(std::size_t position) noexcept {
        return this->values_.begin() + static_cast<std::ptrdiff_t>(position);
    }

    void put(std::size_t position, T&& value) {
        auto& values = this->values_;
        if (values.size() == values.capacity()) values.reserve(std::max<std::size_t>(4, values.size() * 2));
        if (this->recording()) this->recordInsertion(position);
        values.insert(slot(position), std::move(value));
    }
    void take(std::size_t position) {
        if (this->recording()) {
            auto kept = roomFor(1);
            this->reserveStep();
            kept->values.push_back(std::move(*slot(position)));
            this->record(RunStep{this, false, position, 1, {}, std::move(kept)});
        }
        this->values_.erase(slot(position));
    }
    void replace(std::size_t position, T&& value) {
        if (this->recording()) {
            auto kept = roomFor(1);
            this->reserveStep();
            kept->values.push_back(std::move(*slot(position)));
            this->record(MemberStep{this, position, {}, std::move(kept)});
        }
        *slot(position) = std::move(value);
    }

    bool unique_ = false;
};

/// The values of a "set" property: sorted by <, without duplicates. Inserting a present value announces a change, but
/// the content stays as it is.
template <class T>
class PrimitiveSet final : public PrimitiveCollection<T, std::set<T>, PrimitiveSet<T>> {
    using Container = std::set<T>;
    using Base = PrimitiveCollection<T, Container, PrimitiveSet<T>>;
    using Operation = AbstractOwnedCollection::Operation;

public:
    using const_iterator = typename Base::const_iterator;

    PrimitiveSet(ModelElement::Impl* owner, std::uint16_t index) noexcept : Base(owner, index) {}
    explicit PrimitiveSet(meta::Property const& property) : Base(property) {}

    bool contains(T const& value) const { return this->values_.contains(value); }
    std::pair<const_iterator, bool> insert(T const& value) {
        Operation operation(*this);
        this->modifying();
        auto const [position, fresh] = this->values_.insert(value);
        if (fresh && this->recording()) {
            try {
                auto taken = std::make_unique<Taken>();
                taken->position = position;
                this->reserveStep();
                this->record(EntryStep{this, true, std::move(taken)});
            } catch (...) {
                this->values_.erase(position);
                throw;
            }
        }
        operation.commit();
        return {position, fresh};
    }
    /// Returns the number of values removed: 0 or 1.
    std::size_t erase(T const& value) {
        Operation operation(*this);
        this->modifying();
        auto const position = this->values_.find(value);
        bool const found = position != this->values_.end();
        if (found && this->recording()) {
            auto taken = std::make_unique<Taken>();
            this->reserveStep();
            taken->node = this->values_.extract(position);
            this->record(EntryStep{this, false, std::move(taken)});
        } else if (found) {
            this->values_.erase(position);
        }
        operation.commit();
        return found ? 1 : 0;
    }

    AbstractPrimitiveCollection::Kind getKind() const noexcept override {
        return AbstractPrimitiveCollection::Kind::Set;
    }
    void genericAdd(Value const& value) override { insert(value.getValue<T>()); }
    void genericRemove(Value const& value) override { erase(value.getValue<T>()); }

    void exchangeEntry(EntryStep& step) noexcept override {
        auto& taken = static_cast<Taken&>(*step.entry);
        if (step.isIn) {
            taken.node = this->values_.extract(taken.position);
        } else {
            taken.position = this->values_.insert(std::move(taken.node)).position;
        }
        step.isIn = !step.isIn;
    }

private:
    /// A value of a set: while it is a member, `position` points at it; otherwise `node` holds it.
    struct Taken : StepContent {
        const_iterator position;
        typename Container::node_type node;
    };
};

}  // namespace quay::zero
