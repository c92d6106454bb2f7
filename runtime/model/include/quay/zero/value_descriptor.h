// The descriptor of a property with one value: how it is written, recorded and undone.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

#include <string>
#include <type_traits>
#include <utility>

namespace quay::zero {

/// Whether writing `b` over `a` would change nothing. NaN equals nothing, so writing it always is a change.
template <class T>
bool isSameValue(T const& a, T const& b) {
    return a == b;
}

/// The descriptor of a field of type T that holds one value: a number, a text, an optional, a structured value.
template <class T>
class ValueDescriptor : public PropertyDescriptor {
public:
    using Element = ModelElement::Impl;

    /// How a value is passed: small ones by value, so that they stay in registers.
    using Passed = std::conditional_t<std::is_scalar_v<T>, T, T const&>;

    template <class X>
    constexpr ValueDescriptor(std::uint16_t index, T X::*field) noexcept
        : PropertyDescriptor(index, PropertyKind::Value, std::is_trivially_copyable_v<T> && Cell::kInPlace<T>),
          field_(static_cast<T Element::*>(field)) {}

    T const& read(Element const& e) const noexcept { return e.*field_; }

    /// Writes a value: refuses proxies and dead elements, compares, records the old value in a transaction, stores.
    /// Writing the present value does nothing. If it throws, nothing was changed.
    void write(Element& e, Passed value) const {
        e.requireWritable();
        if (isSameValue(e.*field_, value)) return;
        // The most frequent case of a number is inline; the rest is in another function, so that this one stays small.
        if constexpr (std::is_scalar_v<T>) {
            if (!mayDifferThoughEqual(value) && e.model().journal().isSurelyRecorded(e, *this)) {
                e.*field_ = value;
                return;
            }
        }
        writeOther(e, value);
    }

    void save(Element const& e, Cell& old) const override { old.emplace<T>(e.*field_); }
    void exchange(Element& e, Cell& old) const noexcept override { std::swap(e.*field_, old.get<T>()); }
    void restore(Element& e, Cell const& old) const override { assign(e.*field_, old.get<T>()); }
    bool unchanged(Element const& e, Cell const& old) const override { return isSameValue(e.*field_, old.get<T>()); }
    void discard(Cell& old) const noexcept override { old.drop<T>(); }
    void relocate(Cell& from, Cell& to) const noexcept override { from.moveTo<T>(to); }

protected:
    ~ValueDescriptor() = default;

    /// Stores a value into an element that is being made.
    void fill(Element& e, T const& value) const { e.*field_ = value; }

    /// Stores a value that is known to differ.
    template <class V>
    void replace(Element& e, V&& value) const {
        Journal& journal = e.model().journal();
        if (mayDifferThoughEqual(value)) journal.noteMayDiffer();
        Admission const admission = journal.admit(e, *this);
        switch (admission) {
            case Admission::Unrecorded:
                assign(e.*field_, std::forward<V>(value));
                break;
            case Admission::Recorded:
                storeRecorded(e, std::forward<V>(value), [&]() -> Cell& { return journal.record(e, *this); });
                break;
            default:
                replaceAlone(journal, admission, e, std::forward<V>(value));
        }
    }

private:
    /// Whether another value may be equal to this one without being the same, as 0.0 and -0.0 are.
    static bool mayDifferThoughEqual(T const& value) noexcept {
        if constexpr (std::is_floating_point_v<T>) {
            return value == 0;
        } else {
            return std::is_class_v<T> && !std::is_same_v<T, std::string> && !std::is_same_v<T, std::u16string>;
        }
    }

    [[gnu::noinline]] void writeOther(Element& e, Passed value) const { replace(e, value); }

    /// Stores a value in a transaction of its own.
    template <class V>
    [[gnu::noinline]] void replaceAlone(Journal& journal, Admission admission, Element& e, V&& value) const {
        if (admission == Admission::Alone) {
            storeRecorded(e, std::forward<V>(value), [&]() -> Cell& { return journal.recordAlone(e, *this); });
            return;
        }
        ImplicitTransaction transaction(journal);
        storeRecorded(e, std::forward<V>(value), [&]() -> Cell& { return journal.record(e, *this); });
        transaction.commit();
    }

    /// Assigns a value; if that throws, the field keeps its former value.
    template <class V>
    static void assign(T& field, V&& value) {
        constexpr bool allOrNothing = std::is_rvalue_reference_v<V&&> || std::is_trivially_copyable_v<T> ||
                                      std::is_same_v<T, std::string> || std::is_same_v<T, std::u16string>;
        if constexpr (allOrNothing) {
            field = std::forward<V>(value);
        } else {
            T made(value);
            field = std::move(made);
        }
    }

    /// Stores a value after moving the old one into the cell that `record` returns.
    template <class V, class Record>
    void storeRecorded(Element& e, V&& value, Record&& record) const {
        // Only creating the new value and taking the cell can fail, so both come before anything changes.
        if constexpr (Cell::kInPlace<T>) {
            T made(std::forward<V>(value));
            Cell& old = record();
            old.emplace<T>(std::move(e.*field_));
            e.*field_ = std::move(made);
        } else {
            Cell made;
            made.emplace<T>(std::forward<V>(value));
            Cell* old = nullptr;
            try {
                old = &record();
            } catch (...) {
                made.drop<T>();
                throw;
            }
            made.moveTo<T>(*old);
            exchange(e, *old);
        }
    }

    T Element::*field_;
};

}  // namespace quay::zero
