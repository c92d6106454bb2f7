// The process's marshalers, by type.
#pragma once

#include <quay/zero/mi/value_marshaler.h>

#include <memory>
#include <unordered_map>

namespace quay::zero::mi {

/// The marshalers of all types. Those of the primitive types are present from the start. Libraries register theirs when
/// they are loaded and remove them when they are unloaded; everything else belongs to the script thread.
class ORDO_API MetaMarshalerRegistry {
public:
    /// The registry is never destroyed, so that libraries may call it while the process exits.
    static MetaMarshalerRegistry& getInstance();

    MetaMarshalerRegistry(MetaMarshalerRegistry const&) = delete;
    MetaMarshalerRegistry& operator=(MetaMarshalerRegistry const&) = delete;

    /// Null if there is none.
    ValueMarshaler* findPropertyMarshaler(meta::Type const& type) const noexcept;
    /// NoSuchType if there is none.
    ValueMarshaler& getPropertyMarshaler(meta::Type const& type) const;

    /// Registers a marshaler and replaces the one that the type had.
    void registerTypeMarshaler(meta::Type const& type, std::unique_ptr<ValueMarshaler> marshaler);
    void unregisterTypeMarshaler(meta::Type const& type) noexcept;

private:
    MetaMarshalerRegistry();

    std::unordered_map<ModelElement::Impl const*, std::unique_ptr<ValueMarshaler>> marshalers_;
};

}  // namespace quay::zero::mi
