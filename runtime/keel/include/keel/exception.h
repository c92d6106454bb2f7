// The exceptions of the whole system: every failure is a message, thrown as an exception of that message's
// own type.
#pragma once

#include <keel/export.h>
#include <keel/message.h>

#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace keel::core::except {

/// What all of the system's exceptions have in common, whatever else they derive from. A place that only
/// passes failures on, such as a script layer, catches this.
class QUAY_ZERO_API Error {
public:
    virtual ~Error();

    virtual Message const& GetBaseMsgIDObj() const noexcept = 0;
    /// The message's identifier: "quay0:messages:NoSuchType".
    std::string GetID() const { return GetBaseMsgIDObj().identifier(); }

    virtual std::unique_ptr<Error> clone() const = 0;
    /// Throws a copy of the exception with its own type.
    [[noreturn]] virtual void rethrow() const = 0;

    /// The identifier, a colon and the readable sentence, as UTF-8.
    virtual char const* what() const noexcept = 0;

protected:
    Error() = default;
    Error(Error const&) = default;
    Error& operator=(Error const&) = default;

    static std::string describe(Message const& message);
};

/// The exception that carries a message of class `M`. `Base` is the standard exception that it also is; `Tag`
/// tells apart exceptions that carry the same message. Copies share the message and the text and never throw.
/// The template isn't exported, so each library has virtual tables of its own and doesn't depend on those of another
/// one. Catching works across libraries all the same, since exception types are compared by name.
template <class M, class Base = std::exception, class Tag = void>
class Exception final : public Base, public Error {
public:
    explicit Exception(M message) : content_(std::make_shared<Content const>(std::move(message))) {}
    // Exceptions are copied, never moved, since a moved-from exception would have no message.
    Exception(Exception const&) noexcept = default;
    Exception& operator=(Exception const&) noexcept = default;
    ~Exception() override = default;

    M const& message() const noexcept { return content_->message; }

    Message const& GetBaseMsgIDObj() const noexcept override { return content_->message; }
    std::unique_ptr<Error> clone() const override { return std::make_unique<Exception>(*this); }
    [[noreturn]] void rethrow() const override { throw *this; }
    char const* what() const noexcept override { return content_->text.c_str(); }

private:
    struct Content {
        explicit Content(M m) : message(std::move(m)), text(describe(message)) {}

        M message;
        std::string text;
    };

    std::shared_ptr<Content const> content_;
};

/// Memory for the script layer ran out.
class QUAY_ZERO_API bad_alloc : public std::bad_alloc {
public:
    char const* what() const noexcept override;
};

}  // namespace keel::core::except
