#include <quay/zero/meta/property.h>
#include <quay/zero/storage.h>
#include <quay/zero/value.h>

#include <algorithm>
#include <new>
#include <utility>

namespace quay::zero {

bool Storage::has(unsigned long index) const noexcept {
    if (count_ <= 1) return count_ == 1 && first_.descriptor->index() == index;
    return index < more_->mask.size() && more_->mask[index];
}

std::vector<unsigned long> Storage::indices() const {
    std::vector<unsigned long> result;
    const_cast<Storage*>(this)->forEach(
        [&](PropertyDescriptor const& descriptor, Cell&) { result.push_back(descriptor.index()); });
    return result;
}

Storage::Overflow& Storage::overflow() {
    if (more_ == nullptr) more_ = std::make_unique<Overflow>();
    return *more_;
}

Cell& Storage::addMore(PropertyDescriptor const& descriptor) {
    Overflow& more = overflow();
    std::size_t const wanted = std::max<std::size_t>(descriptor.index(), first_.descriptor->index()) + 1;
    if (more.mask.size() < wanted) more.mask.resize(std::max<std::size_t>(64, wanted));
    more.entries.emplace_back(&descriptor);
    more.mask[first_.descriptor->index()] = true;
    more.mask[descriptor.index()] = true;
    ++count_;
    return more.entries.back().old;
}

Cell* Storage::find(unsigned long index) noexcept {
    Cell* found = nullptr;
    if (has(index)) {
        forEach([&](PropertyDescriptor const& descriptor, Cell& old) {
            if (descriptor.index() == index) found = &old;
        });
    }
    return found;
}

Value Storage::getOldValue(meta::Property const& property, ReflectionPrivateTag const& /*tag*/) {
    PropertyDescriptor const* const descriptor = element_->descriptorOf(property);
    Cell* const old = descriptor == nullptr ? nullptr : find(descriptor->index());
    return old == nullptr ? Value() : descriptor->wrap(*element_, property, *old);
}

void Storage::revertUnchanged(ModelElement::Impl* current) {
    for (std::size_t i = count_; i-- > 0;) {
        Entry& e = i == 0 ? first_ : more_->entries[i - 1];
        if (e.descriptor->unchanged(*current, e.old)) drop(i);
    }
}

/// Discards one entry and keeps the order of the others.
void Storage::drop(std::size_t position) noexcept {
    Entry& gone = position == 0 ? first_ : more_->entries[position - 1];
    // The mask may stem from an earlier use and be narrower.
    if (more_ != nullptr && gone.descriptor->index() < more_->mask.size()) {
        more_->mask[gone.descriptor->index()] = false;
    }
    gone.descriptor->discard(gone.old);
    for (std::size_t i = position; i + 1 < count_; ++i) {
        Entry& to = i == 0 ? first_ : more_->entries[i - 1];
        Entry& from = more_->entries[i];
        from.descriptor->relocate(from.old, to.old);
        to.descriptor = from.descriptor;
    }
    if (count_ > 1) more_->entries.pop_back();
    --count_;
}

bool Storage::absorb(Storage& inner) noexcept {
    while (inner.count_ > 0) {
        Entry& e = inner.count_ == 1 ? inner.first_ : inner.more_->entries.back();
        if (has(e.descriptor->index())) {
            inner.drop(inner.count_ - 1);
            continue;
        }
        try {
            e.descriptor->relocate(e.old, add(*e.descriptor));
        } catch (std::bad_alloc const&) {
            return false;
        }
        inner.removeLast();
    }
    return true;
}

/// Removes the last entry, whose cell must be empty.
void Storage::removeLast() noexcept {
    if (count_ > 1) {
        more_->mask[more_->entries.back().descriptor->index()] = false;
        more_->entries.pop_back();
    }
    --count_;
}

void Storage::setContainer(ModelElement const& container, meta::Property const& feature) {
    overflow().container = container;
    overflow().containmentFeature = feature;
}

ModelElement const& Storage::oldContainer() const noexcept {
    static ModelElement const none;
    return more_ == nullptr ? none : more_->container;
}

void Storage::clearAll() noexcept {
    forEach([](PropertyDescriptor const& descriptor, Cell& old) { descriptor.discard(old); });
    std::fill(more_->mask.begin(), more_->mask.end(), false);
    more_->entries.clear();
    more_->container = ModelElement();
    more_->containmentFeature = meta::Property();
}

// --- The pool -------------------------------------------------------------------------------------------------------

StoragePool::~StoragePool() {
    while (free_ != nullptr) delete std::exchange(free_, free_->tracking().next);
}

void StoragePool::grow() {
    free_ = new Storage;
    count_ = 1;
}

void StoragePool::remove(Storage& s) noexcept { delete &s; }

}  // namespace quay::zero
