// The failures of the class-object system: messages of the catalogue "ordo:messages". They read as sentences, and hosts
// turn them into errors of their own language.
#pragma once

#include <keel/exception.h>
#include <ordo/export.h>

#include <string>
#include <string_view>
#include <vector>

namespace ordo {

/// A message of this system. What is thrown is a keel::core::except::Exception<ordo::Failure>.
class ORDO_API Failure : public keel::MessageOf<Failure> {
public:
    using MessageOf::MessageOf;
};

/// The ids in "ordo:messages", each with its arguments.
namespace failures {

inline constexpr std::string_view OutOfRange = "OutOfRange";              ///< value, wanted type
inline constexpr std::string_view NotInteger = "NotInteger";              ///< value, wanted type
inline constexpr std::string_view WrongType = "WrongType";                ///< what was given, what is wanted
inline constexpr std::string_view NoValue = "NoValue";                    ///< wanted type
inline constexpr std::string_view NotEncodable = "NotEncodable";          ///< the unit that UTF-8 has no form for
inline constexpr std::string_view NoSuchLiteral = "NoSuchLiteral";        ///< text or number, enumeration
inline constexpr std::string_view NoSuchClass = "NoSuchClass";            ///< name
inline constexpr std::string_view NoSuchMember = "NoSuchMember";          ///< name, class, the nearest name if any
inline constexpr std::string_view ReadOnly = "ReadOnly";                  ///< property, class
inline constexpr std::string_view NotDeletable = "NotDeletable";          ///< member, class
inline constexpr std::string_view AbstractClass = "AbstractClass";        ///< class
inline constexpr std::string_view WrongArguments = "WrongArguments";      ///< method, its signature
inline constexpr std::string_view NoSuchKey = "NoSuchKey";                ///< key
inline constexpr std::string_view IndexOutOfRange = "IndexOutOfRange";    ///< index, size
inline constexpr std::string_view NestedTooDeep = "NestedTooDeep";        ///< (none)
inline constexpr std::string_view TooLarge = "TooLarge";                  ///< (none)
inline constexpr std::string_view TransactionEnded = "TransactionEnded";  ///< (none)
inline constexpr std::string_view Unexpected = "Unexpected";              ///< the failure's own words

}  // namespace failures

/// Throws one of the failures above. `id` must live as long as the process.
[[noreturn]] ORDO_API void raise(std::string_view id, std::vector<std::u16string> arguments = {});
/// Throws "ZELDRA:class:InvalidHandle".
[[noreturn]] ORDO_API void raiseInvalidHandle();

/// The kind of error of the host language that a failure is turned into.
enum class ErrorKind {
    Plain,      ///< the host's error class for all failures only
    Value,      ///< a value of the right type that can't be used
    Type,       ///< a value of the wrong type
    Attribute,  ///< no such member
    Key,        ///< no such key
    Index,      ///< no such position
};

/// The kind of an identifier; Plain if none was set for it. Kinds of this catalogue, of "quay0:messages" and of
/// "ZELDRA:class" are set from the start.
ORDO_API ErrorKind errorKindOf(std::string_view identifier);
/// Sets the kind of an identifier, such as "catalogue:Message", and replaces the one it had.
ORDO_API void setErrorKind(std::string_view identifier, ErrorKind kind);

}  // namespace ordo
