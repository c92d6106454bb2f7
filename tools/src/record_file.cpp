#include "record_file.h"

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <keel/exception.h>
#include <quay/zero/io/io.h>

#include "failure.h"

namespace modelref {

namespace {

template <class F>
auto sayingFailures(F&& f) {
    try {
        return f();
    } catch (keel::core::except::Error const& error) {
        throw Failure(error.GetBaseMsgIDObj().sentence());
    }
}

}  // namespace

quay::zero::Model loadRecord(std::filesystem::path const& path) {
    MetaPackageVw_modelref_info::getInstance();
    return sayingFailures([&] { return quay::zero::io::load(path); });
}

void saveRecord(quay::zero::Model const& model, std::filesystem::path const& path) {
    sayingFailures([&] { quay::zero::io::save(model, path); });
}

void saveText(std::string_view text, std::filesystem::path const& path) {
    sayingFailures([&] { quay::zero::io::writeFile(path, text); });
}

}  // namespace modelref
