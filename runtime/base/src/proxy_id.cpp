#include <quay/zero/proxy_id.h>

#include <boost/uuid/uuid_hash.hpp>
#include <functional>

std::size_t std::hash<quay::zero::ProxyId>::operator()(quay::zero::ProxyId const& p) const noexcept {
    return boost::uuids::hash_value(p.id()) ^ std::hash<std::u16string>()(p.store());
}
