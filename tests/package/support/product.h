// The product as a library that a process loads at run time.
#pragma once

#include <quay/zero/meta/registry.h>

#include <string>
#include <vector>

/// The product's library, loaded by the constructor and closed by the destructor.
class Product {
public:
    /// Throws std::runtime_error with the loader's text if the library can't be loaded.
    Product();
    ~Product();
    Product(Product const&) = delete;
    Product& operator=(Product const&) = delete;

    /// An exported function by its symbol, or null.
    template <class F>
    F* function(char const* symbol) const {
        return reinterpret_cast<F*>(find(symbol));
    }
    /// Calls MetaPackageVw_modelref_info::getInstance().
    void* getInstance() const;
    /// Whether the library is mapped in the process.
    static bool isMapped();

private:
    void* find(char const* symbol) const;
    void* library_;
};

namespace product {

using namespace quay::zero::meta;

inline constexpr char16_t const* kUri = u"quay0://quay/quay0/vw_modelref_info/rel7";
/// The number of the package's meta objects: all entries of its table but the three primitive types, which belong to
/// the runtime.
inline constexpr std::size_t kObjects = 796;

inline MetaRegistry& registry() { return *MetaRegistry::getInstance(); }
/// The root package, or an empty handle.
inline Package rootPackage() { return registry().findRootPackage(kUri); }
/// How many registered root packages, dead or alive, have the URI.
std::size_t countRootPackages();
/// The package with every meta object below it, in the order in which they were created.
std::vector<quay::zero::ModelElement> objectsOf(Package const& root);
/// The ids of these objects as text, except the inner package's, which is random.
std::vector<std::string> idsOf(Package const& root);
/// Whether no declaration is in progress in the registry: its mutex is free and its model frozen.
bool isAtRest();

}  // namespace product
