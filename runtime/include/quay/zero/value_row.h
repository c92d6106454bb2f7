// A property with one value: the life of a write, and how it is undone.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/property_row.h>
#include <quay/zero/value.h>

#include <string>
#include <type_traits>
#include <utility>

namespace quay::zero {

/// Whether writing `b` over `a` would change nothing. NaN is never the same, so writing one always is a change.
template <class T>
bool isSameValue(T const& a, T const& b) {
    return a == b;
}

/// The row of a field of type T that holds one value: a number, a text, an optional, a structured value.
template <class T>
class ValueRow : public PropertyRow {
public:
    using Element = ModelElement::Impl;

    template <class X>
    constexpr ValueRow(std::uint16_t index, T X::*field) noexcept
        : PropertyRow(index, RowKind::Value), field_(static_cast<T Element::*>(field)) {}

    T const& read(Element const& e) const noexcept { return e.*field_; }

    /// The life of a write: refuse proxies and the dead, compare, record the old value in a transaction, store. Writing
    /// the present value is no event. If it throws, nothing was changed.
    void write(Element& e, T const& value) const {
        e.requireWritable();
        if (!isSameValue(e.*field_, value)) replace(e, value);
    }

    void save(Element const& e, Cell& old) const override { old.emplace<T>(e.*field_); }
    void exchange(Element& e, Cell& old) const noexcept override { std::swap(e.*field_, old.get<T>()); }
    void restore(Element& e, Cell const& old) const override { assign(e.*field_, old.get<T>()); }
    bool unchanged(Element const& e, Cell const& old) const override { return isSameValue(e.*field_, old.get<T>()); }
    void discard(Cell& old) const noexcept override { old.drop<T>(); }
    void relocate(Cell& from, Cell& to) const noexcept override { from.moveTo<T>(to); }

protected:
    ~ValueRow() = default;

    /// Stores a value into an element that is being made.
    void fill(Element& e, T const& value) const { e.*field_ = value; }

    /// Stores a value that is known to differ.
    template <class V>
    void replace(Element& e, V&& value) const {
        ModelImpl& model = e.model();
        if (model.isQuiet()) {
            assign(e.*field_, std::forward<V>(value));
        } else if (model.inTransaction()) {
            store(model, e, std::forward<V>(value));
        } else {
            ImplicitTransaction transaction(model);
            store(model, e, std::forward<V>(value));
            transaction.commit();
        }
    }

private:
    /// Assigns so that the field keeps its value if it throws.
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

    template <class V>
    void store(ModelImpl& model, Element& e, V&& value) const {
        if (model.isRecorded(e, index())) {
            assign(e.*field_, std::forward<V>(value));
            return;
        }
        // The new value is made and the record taken before anything moves: only these two can fail.
        if constexpr (Cell::kInPlace<T>) {
            T made(std::forward<V>(value));
            Cell& old = model.record(e, *this);
            old.emplace<T>(std::move(e.*field_));
            e.*field_ = std::move(made);
        } else {
            Cell made;
            made.emplace<T>(std::forward<V>(value));
            Cell* old = nullptr;
            try {
                old = &model.record(e, *this);
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
