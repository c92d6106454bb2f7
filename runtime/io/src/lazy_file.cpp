#include "lazy_file.h"

#include <quay/zero/text.h>

#include <boost/uuid/uuid_hash.hpp>
#include <memory>
#include <unordered_map>

#include "failures.h"
#include "files.h"
#include "reading.h"

namespace quay::zero::io {

namespace {

/// A file, and where in it the values of each element stand that was postponed. The model's proxy resolver owns it, so
/// the model outlives it.
class LazyFile {
public:
    LazyFile(ModelImpl& model, std::filesystem::path const& path, Limits const& limits)
        : model_(model), limits_(limits), file_(path), store_(toUtf16(std::filesystem::absolute(path).string())) {}

    void loadRoots() {
        Transaction transaction = model_.beginTransaction(false);
        Reading reading(Model(&model_), file_.name(), limits_);
        if (file_.hasOffsets()) {
            reading.loader().postponeChildren(store_, [this](boost::uuids::uuid const& id, Postponed const& where) {
                return postponed_.emplace(id, where).second;
            });
        }
        reading.feed(file_);
        reading.finish();
        elements_ = reading.loader().elementCount();
        transaction.commit(boost::none);
    }

    ModelElement resolve(ProxyId const& id) {
        if (id.store() != store_) return {};
        if (ModelElement present = model_.findElement(id.id(), FindElementBehavior::InMemoryOnly)) return present;
        auto const found = postponed_.find(id.id());
        return found == postponed_.end() ? ModelElement() : read(id.id(), found->second);
    }

private:
    ModelElement read(boost::uuids::uuid const& id, Postponed const& where) {
        if (file_.wasChanged()) reportLoad(file_.name(), "/", "the file was written to since it was opened");
        // A system transaction: listeners aren't told, since what users can reach in the model doesn't change.
        Transaction transaction = model_.beginTransaction(true);
        Reading reading(Model(&model_), file_.name(), limits_);
        reading.loader().beginPostponed(where.type, id, elements_);
        feedValues(reading, where.offset);
        reading.loader().finishPostponed();
        elements_ = reading.loader().elementCount();
        transaction.commit(boost::none);
        return reading.loader().takeRoots().at(0);
    }

    /// Feeds the object that stands behind the key "values", of which the offset is the end.
    void feedValues(Reading& reading, std::uint64_t offset) const {
        std::vector<char> piece(kFirstPiece);
        bool isAfterColon = false;
        for (bool isComplete = false; !isComplete; piece.resize(Reading::kPiece)) {
            std::size_t const count = file_.readAt(piece, offset);
            if (count == 0) reportLoad(file_.name(), "byte " + std::to_string(offset), "the text ends too early");
            offset += count;
            std::string_view text(piece.data(), count);
            if (!isAfterColon) {
                std::size_t const colon = text.find(':');
                isAfterColon = colon != std::string_view::npos;
                text.remove_prefix(isAfterColon ? colon + 1 : text.size());
            }
            if (!text.empty()) isComplete = reading.feedValue(text);
        }
    }

    static constexpr std::size_t kFirstPiece = 4096;  // less than Reading::kPiece, since most elements are small

    ModelImpl& model_;
    Limits limits_;
    SourceFile file_;
    std::u16string store_;
    std::size_t elements_ = 0;
    std::unordered_map<boost::uuids::uuid, Postponed, boost::hash<boost::uuids::uuid>> postponed_;
};

}  // namespace

void loadLazily(Model const& model, std::filesystem::path const& path, Limits const& limits) {
    auto const file = std::make_shared<LazyFile>(*model.impl(), path, limits);
    file->loadRoots();
    model->setProxyResolver([file](ProxyId const& id) { return file->resolve(id); });
}

}  // namespace quay::zero::io
