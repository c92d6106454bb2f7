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

/// Keeps old values of one element. Its cost depends on their number: one old value stands inline; a second one brings
/// a mask as wide as the class and memory for more. Inside a transaction, storages come from the journal's pool and are
/// linked to each other. A storage knows nothing of undo: it keeps values and exchanges them.
class QUAY_ZERO_API Storage {
public:
    /// What the journal keeps in a storage.
    struct Tracking {
        Storage* next = nullptr;   // in its log, or in the pool
        std::uint64_t serial = 0;  // of the savepoint at which it was made
        Track outer;               // the element's track word before this storage
    };

    /// A storage for that element, without values yet.
    explicit Storage(ModelElement::Impl& element) noexcept : element_(&element) {}
    /// A storage without element, for a pool.
    Storage() noexcept = default;
    ~Storage() { clear(); }
    Storage(Storage const&) = delete;
    Storage& operator=(Storage const&) = delete;

    ModelElement::Impl& element() const noexcept { return *element_; }
    void setElement(ModelElement::Impl& element) noexcept { element_ = &element; }
    Tracking& tracking() noexcept { return tracking_; }
    Tracking const& tracking() const noexcept { return tracking_; }

    /// Whether the property of that index has an old value here.
    bool has(unsigned long index) const noexcept;
    bool has(PropertyDescriptor const& descriptor) const noexcept {
        return hasFirst(descriptor) || (count_ > 1 && has(descriptor.index()));
    }
    /// Whether the old value that stands inline is that of this property.
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

    /// An empty cell for the property's old value, which the caller fills at once without throwing.
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
    /// Discards old values that equal the present ones, by each shape's inexpensive comparison.
    void revertUnchanged(ModelElement::Impl* current);
    /// Keeps the container before the transaction.
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
    /// Takes over the old values of `inner`, a later storage of the same element, that this one lacks; the others are
    /// discarded. Returns false if memory runs out: `inner` then keeps those that aren't taken over yet.
    bool absorb(Storage& inner) noexcept;

private:
    struct Entry {
        explicit Entry(PropertyDescriptor const* d = nullptr) noexcept : descriptor(d) {}
        PropertyDescriptor const* descriptor;
        Cell old;
    };
    /// What a storage needs from the second value on.
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

    // The members are in this order so that writing a number touches only one cache line of the storage.
    ModelElement::Impl* element_ = nullptr;
    Tracking tracking_;
    std::unique_ptr<Overflow> more_;
    std::uint64_t count_ = 0;
    Entry first_;
};

static_assert(sizeof(Storage) <= 96);

/// Storages that are in no log, for reuse: a limited number, so that one large transaction doesn't hold memory for
/// good.
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
        --count_;
        s.setElement(element);
        return s;
    }
    void giveBack(Storage& s) noexcept {
        s.clear();
        if (count_ == kLimit) return remove(s);
        s.tracking().next = free_;
        free_ = &s;
        ++count_;
    }

private:
    static constexpr std::size_t kLimit = 8192;

    void grow();
    static void remove(Storage& s) noexcept;

    Storage* free_ = nullptr;
    std::size_t count_ = 0;
};

}  // namespace quay::zero
