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

namespace {

/// Refuses a link to a file that doesn't exist: saving would replace the link, but follows a link to an existing file.
void requirePlace(std::filesystem::path const& path) {
    std::error_code ignored;
    if (std::filesystem::is_symlink(path, ignored) && !std::filesystem::exists(path, ignored)) {
        throw Failure(path.string() + ": can't be written: it is a link to a file that isn't there");
    }
}

}  // namespace

void saveRecord(quay::zero::Model const& model, std::filesystem::path const& path) {
    requirePlace(path);
    sayingFailures([&] { quay::zero::io::save(model, path); });
}

void saveText(std::string_view text, std::filesystem::path const& path) {
    requirePlace(path);
    sayingFailures([&] { quay::zero::io::writeFile(path, text); });
}

}  // namespace modelref
