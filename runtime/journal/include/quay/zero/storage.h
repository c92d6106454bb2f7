// Old values of one element inside a transaction.
#pragma once

#include <quay/zero/cell.h>
#include <quay/zero/meta/handles.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/track.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace quay::zero {

/// Sparse, so that its cost follows the change: one old value stands inline, and a second one brings a mask as wide as
/// the class and room for more. Inside a transaction storages come from the journal's pool and are linked to each
/// other. A storage knows nothing of undo: it keeps values and exchanges them.
class QUAY_ZERO_API Storage {
public:
    /// What the journal notes of a storage.
    struct Tracking {
        Storage* next = nullptr;   // in its log, or in the pool
        std::uint64_t serial = 0;  // of the savepoint that it was made at
        Track outer;               // the element's before this storage
    };

    /// Old values of that element; none yet.
    explicit Storage(ModelElement::Impl& element) noexcept : element_(&element) {}
    /// For a pool.
    Storage() noexcept = default;
    ~Storage() { clear(); }
    Storage(Storage const&) = delete;
    Storage& operator=(Storage const&) = delete;

    ModelElement::Impl& element() const noexcept { return *element_; }
    void setElement(ModelElement::Impl& element) noexcept { element_ = &element; }
    Tracking& tracking() noexcept { return tracking_; }
    Tracking const& tracking() const noexcept { return tracking_; }

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
    /// Calls f(PropertyDescriptor const&, Cell&) for each old value, in that order.
    template <class F>
    void forEach(F&& f) {
        if (count_ > 0) f(*first_.descriptor, first_.old);
        if (count_ > 1) {
            for (Entry& e : more_->entries) f(*e.descriptor, e.old);
        }
    }

    /// Room for the property's old value, which the caller fills at once without throwing.
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
        forEach([&](PropertyDescriptor const& descriptor, Cell& old) { descriptor.exchange(*element_, old); });
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
    struct Entry {
        explicit Entry(PropertyDescriptor const* d = nullptr) noexcept : descriptor(d) {}
        PropertyDescriptor const* descriptor;
        Cell old;
    };
    /// What the second value brings.
    struct Overflow {
        std::vector<bool> mask;
        std::deque<Entry> entries;  // cells don't move
        ModelElement container;
        meta::Property containmentFeature;
    };

    Cell& addMore(PropertyDescriptor const& descriptor);
    void clearAll() noexcept;
    void drop(std::size_t position) noexcept;
    void removeLast() noexcept;
    Overflow& overflow();

    // In this order, a write to a number touches one cache line of it.
    ModelElement::Impl* element_ = nullptr;
    Tracking tracking_;
    std::unique_ptr<Overflow> more_;
    std::uint64_t count_ = 0;
    Entry first_;
};

static_assert(sizeof(Storage) <= 96);

/// Storages that are in no log, for the next writes.
class QUAY_ZERO_API StoragePool {
public:
    StoragePool() = default;
    ~StoragePool();
    StoragePool(StoragePool const&) = delete;
    StoragePool& operator=(StoragePool const&) = delete;

    /// An empty storage for the element.
    Storage& take(ModelElement::Impl& element) {
        if (free_ == nullptr) grow();
        Storage& s = *free_;
        free_ = s.tracking().next;
        s.setElement(element);
        return s;
    }
    void giveBack(Storage& s) noexcept {
        s.clear();
        s.tracking().next = free_;
        free_ = &s;
    }

private:
    void grow();

    Storage* free_ = nullptr;
};

}  // namespace quay::zero
