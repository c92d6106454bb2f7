// Failures of the type system: messages, and diagnostics, which pass a message on until it is thrown.
#pragma once

#include <keel/exception.h>
#include <typesys/export.h>

#include <string>
#include <string_view>
#include <vector>

namespace VWTypeSys {

/// A failure of the type system, told apart by its id within the catalogue "VWTypeSys:messages":
/// NoSuchType (name), NoSuchId (id), InvalidName (name), NameInUse (name), CannotOverride (name), InvalidStringType
/// (expression, parameter), InvalidConstructorText (text), InvalidFixedPointType (what is wrong), NoBlock.
class TYPESYS_API DataTypeMessage : public keel::MessageOf<DataTypeMessage> {
public:
    /// `id` must live as long as the process. The arguments are UTF-8; bytes that aren't become U+FFFD.
    explicit DataTypeMessage(std::string_view id, std::vector<std::string_view> const& arguments = {});
};

using DataTypeException = keel::core::except::Exception<DataTypeMessage>;

}  // namespace VWTypeSys

/// A failure that is returned to a caller. A function that reports by diagnostics returns null for success and
/// otherwise a new diagnostic, which the caller owns.
class TYPESYS_API vwsvDiagnosticImpl {
public:
    explicit vwsvDiagnosticImpl(VWTypeSys::DataTypeMessage message) : message_(std::move(message)) {}

    VWTypeSys::DataTypeMessage const& message() const noexcept { return message_; }

private:
    VWTypeSys::DataTypeMessage message_;
};

/// Throws the diagnostic's message as DataTypeException. The diagnostic, which must not be null, is released and the
/// variable set to null. `subject`, if not null, says what the failure is about.
[[noreturn]] TYPESYS_API void vwsvThrowIExceptionFromDiagnostic(vwsvDiagnosticImpl*& diagnostic, char const* subject);
