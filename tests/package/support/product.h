// The product as a process sees it that loads it at run time.
#pragma once

#include <quay/zero/meta/registry.h>

#include <string>
#include <vector>

/// The product's library, loaded; closed when the object goes.
class Product {
public:
    /// std::runtime_error, with the loader's words, if it can't be loaded.
    Product();
    ~Product();
    Product(Product const&) = delete;
    Product& operator=(Product const&) = delete;

    /// An exported function by its symbol, or null.
    template <class F>
    F* function(char const* symbol) const {
        return reinterpret_cast<F*>(find(symbol));
    }
    /// MetaPackageVw_modelref_info::getInstance().
    void* getInstance() const;
    /// Whether the library is anywhere in the process.
    static bool isMapped();

private:
    void* find(char const* symbol) const;
    void* library_;
};

namespace product {

using namespace quay::zero::meta;

inline constexpr char16_t const* kUri = u"quay0://quay/quay0/vw_modelref_info/rel7";
/// Meta objects of the package: all entries of its table but the three primitive types, which are the
/// runtime's.
inline constexpr std::size_t kObjects = 796;

inline MetaRegistry& registry() { return *MetaRegistry::getInstance(); }
/// The root package, or an empty handle.
inline Package rootPackage() { return registry().findRootPackage(kUri); }
/// How many registered root packages, dead or alive, have the URI.
std::size_t countRootPackages();
/// The package with every meta object below it, in the order in which they were created.
std::vector<quay::zero::ModelElement> objectsOf(Package const& root);
/// Their ids as text, but for the inner package's, which is drawn.
std::vector<std::string> idsOf(Package const& root);
/// Whether the registry is as nobody's declaration leaves it: its mutex free, its model frozen.
bool isAtRest();

}  // namespace product
