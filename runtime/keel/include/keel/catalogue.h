// The sentences that people read when something fails, by message identifier.
#pragma once

#include <keel/export.h>

#include <map>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

namespace keel {

/// The message catalogue of the process. Any thread may use it at any time.
///
/// A sentence may have placeholders: `{0}`, `{1}` and so on stand for the message's arguments, `{subject}` for what it
/// is about and `{value}` for the value refused. An identifier can have several sentences; of those whose placeholders
/// are all known, Message::sentence takes the one that has most of them. Without such a sentence it joins the
/// arguments. A known subject that the sentence doesn't name is put before it, a known value after it.
class QUAY_ZERO_API Catalogue {
public:
    static Catalogue& instance();

    Catalogue(Catalogue const&) = delete;
    Catalogue& operator=(Catalogue const&) = delete;

    /// Enters the sentences of one identifier in place of any that it has. The texts are copied, so that the
    /// library that brings them can be unloaded.
    void add(std::string_view identifier, std::vector<std::string> sentences);

    /// The sentences of an identifier, as UTF-8; none if it isn't in the catalogue.
    std::vector<std::string> sentences(std::string_view identifier) const;

private:
    Catalogue();

    mutable std::shared_mutex mutex_;
    std::map<std::string, std::vector<std::string>, std::less<>> entries_;
};

}  // namespace keel
