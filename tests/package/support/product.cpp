#include "product.h"

#include <boost/uuid/uuid_io.hpp>

#include <dlfcn.h>

#include <algorithm>
#include <stdexcept>
#include <thread>

Product::Product() : library_(dlopen(PRODUCT, RTLD_NOW | RTLD_LOCAL)) {
    if (library_ == nullptr) throw std::runtime_error(dlerror());
}

Product::~Product() { dlclose(library_); }

void* Product::find(char const* symbol) const { return dlsym(library_, symbol); }

void* Product::getInstance() const { return function<void*()>("_ZN27MetaPackageVw_modelref_info11getInstanceEv")(); }

bool Product::isMapped() {
    void* const library = dlopen(PRODUCT, RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) dlclose(library);
    return library != nullptr;
}

namespace product {

std::size_t countRootPackages() {
    std::vector<Package> const all = registry().getRootPackages();
    return static_cast<std::size_t>(
        std::count_if(all.begin(), all.end(), [](Package const& p) { return p->getUri() == kUri; }));
}

std::vector<quay::zero::ModelElement> objectsOf(Package const& root) {
    std::vector<quay::zero::ModelElement> result;
    registry().model()->forEachElement([&](quay::zero::ModelElement::Impl& element) {
        for (auto const* above = &element; above != nullptr; above = above->containerImpl()) {
            if (above == root.impl()) result.emplace_back(&element);
        }
    });
    return result;
}

std::vector<std::string> idsOf(Package const& root) {
    std::vector<std::string> result;
    for (quay::zero::ModelElement const& element : objectsOf(root)) {
        if (element != root && Package::cast(element)) continue;
        result.push_back(to_string(element->uuid()));
    }
    return result;
}

bool isAtRest() {
    bool free = false;
    std::thread([&] {
        free = registry().mutex().try_lock();
        if (free) registry().mutex().unlock();
    }).join();
    try {
        auto const transaction = registry().model()->beginTransaction(true);
        return false;
    } catch (std::exception const&) {
        return free;
    }
}

}  // namespace product
