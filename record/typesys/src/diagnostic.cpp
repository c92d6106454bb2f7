#include <keel/catalogue.h>
#include <keel/text.h>
#include <typesys/diagnostic.h>

#include <memory>
#include <utility>

namespace VWTypeSys {
namespace {

bool enterSentences() {
    auto& catalogue = keel::Catalogue::instance();
    auto const add = [&](char const* id, std::vector<std::string> sentences) {
        catalogue.add(std::string("VWTypeSys:messages:") + id, std::move(sentences));
    };
    add("NoSuchType", {"there is no data type '{0}'; add it to the type table first"});
    add("NoSuchId", {"there is no data type of id {0}"});
    add("InvalidName", {"'{0}' can't be the name of a data type, which has at least one character and no NUL"});
    add("NameInUse", {"another data type is named '{0}'"});
    add("CannotOverride", {"the data type '{0}' can't be overridden"});
    add("InvalidStringType", {"'{0}' is no string type; write string, or string(N) with N above 0",
                              "'{0}', the value of the parameter '{1}', is no string type; write string, or string(N) "
                              "with N above 0"});
    add("InvalidConstructorText", {"'{0}' doesn't tell a number; write bool, float(64) or fixed(signed,16,2^-4,0.5)"});
    add("InvalidFixedPointType", {"there is no such number: {0}"});
    add("NoBlock", {"a data type can't be registered without a block"});
    return true;
}

std::vector<std::u16string> toUtf16(std::vector<std::string_view> const& texts) {
    std::vector<std::u16string> result;
    result.reserve(texts.size());
    for (std::string_view const text : texts) result.push_back(keel::toUtf16(text));
    return result;
}

}  // namespace

DataTypeMessage::DataTypeMessage(std::string_view id, std::vector<std::string_view> const& arguments)
    : MessageOf("VWTypeSys:messages", id, toUtf16(arguments)) {
    static bool const entered = enterSentences();
    static_cast<void>(entered);
}

}  // namespace VWTypeSys

void vwsvThrowIExceptionFromDiagnostic(vwsvDiagnosticImpl*& diagnostic, char const* subject) {
    std::unique_ptr<vwsvDiagnosticImpl> const owned(std::exchange(diagnostic, nullptr));
    VWTypeSys::DataTypeMessage message = owned->message();
    if (subject != nullptr) message.about(keel::toUtf16(subject));
    throw VWTypeSys::DataTypeException(std::move(message));
}
