#include <ordo/failure.h>

#include <keel/catalogue.h>
#include <zx/error.h>

#include <map>
#include <mutex>
#include <utility>

namespace ordo {
namespace {

constexpr std::string_view catalogue = "ordo:messages";

struct Entry {
    std::string_view id;
    ErrorKind kind;
    std::vector<std::string> sentences;
};

std::vector<Entry> entries() {
    return {
        {failures::OutOfRange, ErrorKind::Value, {"{0} is out of the range of {1}"}},
        {failures::NotInteger, ErrorKind::Value, {"{0} isn't an integer, which {1} wants"}},
        {failures::WrongType, ErrorKind::Type, {"{1} is wanted here, not {0}"}},
        {failures::NoValue, ErrorKind::Type, {"{0} is wanted here, and it can't be left empty"}},
        {failures::NotEncodable, ErrorKind::Value, {"a lone surrogate ({0}) can't be kept in this text"}},
        {failures::NoSuchLiteral, ErrorKind::Value, {"'{0}' is no literal of {1}"}},
        {failures::NoSuchClass, ErrorKind::Attribute, {"there is no class '{0}'"}},
        {failures::NoSuchMember,
         ErrorKind::Attribute,
         {"'{1}' has no member '{0}'", "'{1}' has no member '{0}'; did you mean '{2}'?"}},
        {failures::ReadOnly, ErrorKind::Attribute, {"'{0}' of '{1}' can be read only"}},
        {failures::NotDeletable, ErrorKind::Attribute, {"'{0}' of '{1}' can't be deleted"}},
        {failures::AbstractClass, ErrorKind::Type, {"no object of class '{0}' can be made directly"}},
        {failures::WrongArguments, ErrorKind::Type, {"the arguments of '{0}' are {1}"}},
        {failures::NoSuchKey, ErrorKind::Key, {"there is no key {0}"}},
        {failures::IndexOutOfRange, ErrorKind::Index, {"position {0} is outside a collection of {1}"}},
        {failures::NestedTooDeep, ErrorKind::Value, {"the value is nested too deep, or holds itself"}},
        {failures::TooLarge, ErrorKind::Value, {"the value is too large"}},
        {failures::TransactionEnded,
         ErrorKind::Plain,
         {"the transaction has ended already: it was committed or rolled back, or one around it was"}},
        {failures::Unexpected, ErrorKind::Plain, {"{0}"}},
    };
}

struct Kinds {
    Kinds();

    std::mutex mutex;
    std::map<std::string, ErrorKind, std::less<>> table;
};

Kinds::Kinds()
    : table{
          {"quay0:messages:UniquenessConstraint", ErrorKind::Value},
          {"quay0:messages:InvalidValue", ErrorKind::Value},
          {"quay0:messages:CannotAddNonExistentObject", ErrorKind::Value},
          {"quay0:messages:CannotAddSecondObject", ErrorKind::Value},
          {"quay0:messages:CannotCreateCrossModelAssociation", ErrorKind::Value},
          {"quay0:messages:CannotCreateWithoutModel", ErrorKind::Type},
          {"quay0:messages:CannotCastIncompatibleTypes", ErrorKind::Type},
          {"quay0:messages:CannotAddIncompatibleTypes", ErrorKind::Type},
          {"quay0:messages:NoSuchProperty", ErrorKind::Attribute},
      } {
    for (Entry const& entry : entries()) {
        table.emplace(std::string(catalogue) + ':' + std::string(entry.id), entry.kind);
    }
}

Kinds& kinds() {
    static auto* const instance = new Kinds;  // never destroyed: failures can still be reported while the process exits
    return *instance;
}

bool enterSentences() {
    for (Entry& entry : entries()) {
        keel::Catalogue::instance().add(std::string(catalogue) + ':' + std::string(entry.id),
                                        std::move(entry.sentences));
    }
    return true;
}

}  // namespace

void raise(std::string_view id, std::vector<std::u16string> arguments) {
    // The sentences are registered when one is first needed, so that loading the library costs nothing.
    [[maybe_unused]] static bool const entered = enterSentences();
    throw keel::core::except::Exception<Failure>(Failure(catalogue, id, std::move(arguments)));
}

void raiseInvalidHandle() { zxRaiseErrorById("ZELDRA:class", "InvalidHandle"); }

ErrorKind errorKindOf(std::string_view identifier) {
    std::scoped_lock const lock(kinds().mutex);
    auto const found = kinds().table.find(identifier);
    return found != kinds().table.end() ? found->second : ErrorKind::Plain;
}

void setErrorKind(std::string_view identifier, ErrorKind kind) {
    std::scoped_lock const lock(kinds().mutex);
    kinds().table.insert_or_assign(std::string(identifier), kind);
}

}  // namespace ordo
