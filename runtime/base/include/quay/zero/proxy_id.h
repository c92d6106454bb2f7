// What a proxy stands for: an element's id and its store.
#pragma once

#include <keel/export.h>

#include <boost/uuid/uuid.hpp>
#include <compare>
#include <cstddef>
#include <string>
#include <utility>

namespace quay::zero {

/// An element's id, and the name of the store that it lies in. An empty store name means the model's own.
class ProxyId {
public:
    ProxyId() = default;
    explicit ProxyId(boost::uuids::uuid const& id) : id_(id) {}
    ProxyId(std::u16string store, boost::uuids::uuid const& id) : store_(std::move(store)), id_(id) {}

    std::u16string const& store() const noexcept { return store_; }
    boost::uuids::uuid const& id() const noexcept { return id_; }
    /// Whether the element lies in a store other than `ownStore`.
    bool hasOutsidePart(std::u16string const& ownStore) const noexcept { return !store_.empty() && store_ != ownStore; }

    friend bool operator==(ProxyId const&, ProxyId const&) = default;

private:
    std::u16string store_;
    boost::uuids::uuid id_{};
};

}  // namespace quay::zero

template <>
struct std::hash<quay::zero::ProxyId> {
    QUAY_ZERO_API std::size_t operator()(quay::zero::ProxyId const& p) const noexcept;
};
