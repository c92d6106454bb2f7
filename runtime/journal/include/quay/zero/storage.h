// Old values of one element inside a transaction.
#pragma once

#include <quay/zero/cell.h>
#include <quay/zero/meta/handles.h>
#include <quay/zero/model_element.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/track.h>

#include <boost/dynamic_bitset.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace quay::zero {

class ModelImpl;

/// Sparse, so that its cost follows the change: one old value stands inline, and a second one brings a mask as wide as
/// the class and room for more. Inside a transaction storages come from the model's pool and are linked to each other.
class QUAY_ZERO_API Storage {
public:
    /// Old values of that element; none yet.
    explicit Storage(ModelElement::Impl& element) noexcept : element_(&element) {}
    /// For a pool.
    Storage() noexcept = default;
    ~Storage() { clear(); }
    Storage(Storage const&) = delete;
    Storage& operator=(Storage const&) = delete;

    ModelElement::Impl& element() const noexcept { return *element_; }

    /// Whether the old value of that index is here: the bit of the changed mask.
    bool has(unsigned long index) const noexcept;
    bool has(PropertyDescriptor const& descriptor) const noexcept {
        return hasFirst(descriptor) || (count_ > 1 && has(descriptor.index()));
    }
    /// Whether that is the value that stands inline.
    bool hasFirst(PropertyDescriptor const& descriptor) const noexcept {
        return first_.descriptor == &descriptor && count_ != 0;
    }
    bool empty() const noexcept { return count_ == 0; }
    /// The indices that have an old value, in the order in which they were first written.
    std::vector<unsigned long> indices() const;

    /// Room for the descriptor's old value, which the caller fills at once without throwing.
    Cell& add(PropertyDescriptor const& descriptor) {
        if (count_ != 0) return addMore(descriptor);
        first_.descriptor = &descriptor;
        count_ = 1;
        return first_.old;
    }
    /// The old value of an index, or null.
    Cell* find(unsigned long index) noexcept;

    /// The old value, if the property has one here; otherwise an empty, untyped value. The value of a collection
    /// points into this storage.
    Value getOldValue(meta::Property const& property, ReflectionPrivateTag const& tag);
    /// Forgets the properties that hold their old value again, by each shape's inexpensive rule.
    void revertUnchanged(ModelElement::Impl* current);
    /// The container before the transaction, for whoever keeps one here.
    void setContainer(ModelElement const& container, meta::Property const& feature);
    void setOldContainer(ModelElement const& container, meta::Property const& feature) {
        setContainer(container, feature);
    }
    ModelElement const& oldContainer() const noexcept;

    /// Exchanges every field with its old value.
    void exchange() noexcept {
        forEach([&](Entry& e) { e.descriptor->exchange(*element_, e.old); });
    }
    void clear() noexcept {
        if (more_ != nullptr) {
            clearAll();
        } else if (count_ != 0 && !first_.descriptor->isPlain()) {
            first_.descriptor->discard(first_.old);
        }
        count_ = 0;
    }
    /// Takes over what `inner`, a later storage of the same element, has and this one doesn't; the rest of it is
    /// dropped. Answers false when memory ran out: `inner` then keeps what was not yet taken.
    bool absorb(Storage& inner) noexcept;

private:
    friend class ModelImpl;
    friend class UndoLog;
    friend class ChangeSet;

    struct Entry {
        explicit Entry(PropertyDescriptor const* r = nullptr) noexcept : descriptor(r) {}
        PropertyDescriptor const* descriptor;
        Cell old;
    };
    /// What the second value brings.
    struct Overflow {
        boost::dynamic_bitset<unsigned long> mask;
        std::deque<Entry> entries;  // cells don't move
        ModelElement container;
        meta::Property containmentFeature;
    };

    template <class F>
    void forEach(F&& f) {
        if (count_ > 0) f(first_);
        if (count_ > 1) {
            for (Entry& e : more_->entries) f(e);
        }
    }
    Cell& addMore(PropertyDescriptor const& descriptor);
    void clearAll() noexcept;
    void drop(std::size_t position) noexcept;
    void removeLast() noexcept;
    Overflow& overflow();

    // In this order, a write to a number touches one cache line of it.
    ModelElement::Impl* element_ = nullptr;
    Storage* next_ = nullptr;   // in its level's list, or in the pool
    std::uint64_t serial_ = 0;  // the level that it was made at
    Track outerTrack_;          // the element's before this storage
    std::unique_ptr<Overflow> more_;
    std::uint64_t count_ = 0;
    Entry first_;
};

static_assert(sizeof(Storage) <= 96);

}  // namespace quay::zero
