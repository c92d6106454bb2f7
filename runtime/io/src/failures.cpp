#include "failures.h"

#include <keel/catalogue.h>
#include <quay/zero/io/messages.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <system_error>

namespace quay::zero::io {

namespace {

/// Adds the sentences of this folder's messages to the catalogue, the first time that it is called.
void enterSentences() {
    static bool const entered = [] {
        keel::Catalogue& catalogue = keel::Catalogue::instance();
        catalogue.add("quay0:messages:CannotLoad", {"{0}: at {1}: {2}"});
        catalogue.add("quay0:messages:CannotSave", {"the model can't be saved: at {0}: {1}"});
        catalogue.add("quay0:messages:CannotReadFile", {"{0}: can't be read: {1}"});
        catalogue.add("quay0:messages:CannotWriteFile", {"{0}: can't be written: {1}"});
        return true;
    }();
    static_cast<void>(entered);
}

std::u16string reasonOf(int error) { return toUtf16(std::generic_category().message(error)); }

}  // namespace

void refuseSecond(std::string_view key) { throw Refused("the key " + inQuotes(key) + " stands twice"); }

void refuseSecondId() { throw Refused("another element has the same id"); }

void reportLoad(std::string_view file, std::string_view place, std::string_view reason) {
    enterSentences();
    reportException(quay0::messages::CannotLoad(toUtf16(file), toUtf16(place), toUtf16(reason)));
}

void reportSave(std::string_view place, std::string_view reason) {
    enterSentences();
    reportException(quay0::messages::CannotSave(toUtf16(place), toUtf16(reason)));
}

void reportUnreadable(std::string_view file, int error) {
    enterSentences();
    reportException(quay0::messages::CannotReadFile(toUtf16(file), reasonOf(error)));
}

void reportUnwritable(std::string_view file, int error) {
    enterSentences();
    reportException(quay0::messages::CannotWriteFile(toUtf16(file), reasonOf(error)));
}

void reportUnwritable(std::string_view file, std::string_view reason) {
    enterSentences();
    reportException(quay0::messages::CannotWriteFile(toUtf16(file), toUtf16(reason)));
}

std::string inQuotes(std::string_view name) {
    constexpr std::size_t kLongest = 80;
    std::string result = "'";
    for (char const c : name.substr(0, kLongest)) result.push_back(static_cast<unsigned char>(c) < 0x20 ? ' ' : c);
    return result + (name.size() > kLongest ? "...'" : "'");
}

}  // namespace quay::zero::io
