#include <keel/exception.h>
#include <quay/zero/report.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <functional>
#include <type_traits>

namespace {

using namespace quay0::messages;
using keel::Message;
using keel::core::except::Error;
using keel::core::except::Exception;

/// Reports `m` and checks that the exception is exactly of its class, and an Error and a std::exception with the same
/// text.
template <class M>
std::string reported(M const& m) {
    std::string text;
    try {
        quay::zero::reportException(m);
    } catch (Exception<M, std::exception, void> const& e) {
        EXPECT_EQ(e.message().arguments(), m.arguments());
        EXPECT_EQ(e.GetID(), m.identifier());
        EXPECT_STREQ(static_cast<std::exception const&>(e).what(), static_cast<Error const&>(e).what());
        text = e.what();
    }
    return text;
}

TEST(Messages, SayWhatWasWrong) {
    struct Case {
        std::string id;
        std::vector<std::u16string> arguments;
        std::string plain;     // the sentence without subject and value
        std::string withBoth;  // the sentence about X.p and the value 1; empty if it only has these added
        std::function<std::string(bool)> report;
        Message message;
    };
    auto const make = [](std::string id, std::vector<std::u16string> arguments, std::string plain, std::string withBoth,
                         auto m) {
        auto report = [m](bool known) mutable {
            return known ? reported(m.about(u"X.p").withValue(u"1")) : reported(m);
        };
        return Case{std::move(id), std::move(arguments), std::move(plain), std::move(withBoth), report, m};
    };
    Case const cases[] = {
        make("CannotModifyProxy", {},
             "the element is a proxy, which isn't loaded and can't be changed; resolve it first", "",
             CannotModifyProxy()),
        make("NoSuchProperty", {u"colour", u"R.Port"}, "'R.Port' has no property 'colour'", "",
             NoSuchProperty(u"colour", u"R.Port")),
        make("NoSuchType", {u"ZxArray"},
             "there is no type 'ZxArray' in the meta registry; load the package that declares it first", "",
             NoSuchType(u"ZxArray")),
        make("InvalidValue", {}, "the value is missing or can't be used here", "X.p: 1 can't be used as a value here",
             InvalidValue()),
        make("CannotCastIncompatibleTypes", {u"Real"},
             "the value is of another type or count than is asked for; the type in question is 'Real'", "",
             CannotCastIncompatibleTypes(u"Real")),
        make("CannotAddIncompatibleTypes", {u"R.A", u"R.B"},
             "an element of class 'R.A' can't stand in a collection of 'R.B'", "",
             CannotAddIncompatibleTypes(u"R.A", u"R.B")),
        make("CannotAddNonExistentObject", {},
             "the element is empty or was destroyed, so it can neither be changed nor be put anywhere", "",
             CannotAddNonExistentObject()),
        make("CannotAddSecondObject", {}, "the element is in the collection already, and it can be there only once", "",
             CannotAddSecondObject()),
        make("CannotCreateCrossModelAssociation", {},
             "the element belongs to another model; create it in the model where it is to be used", "",
             CannotCreateCrossModelAssociation()),
        make("CannotCreateWithoutModel", {}, "an element can't be created without a model; give one first", "",
             CannotCreateWithoutModel()),
        make("UniquenessConstraint", {}, "the key or id is in use; each element needs one of its own",
             "X.p: 1 is in use", UniquenessConstraint()),
        make("ModelIsFrozen", {}, "the model is frozen and can't be changed; thaw it first", "", ModelIsFrozen()),
        make("ListenerMayNotWrite", {},
             "a listener can't change the model that it listens to; do it after the listener has returned", "",
             ListenerMayNotWrite()),
        make("TransactionIsOpen", {}, "undo and redo can't run inside a transaction; commit it or roll it back first",
             "", TransactionIsOpen()),
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.id);
        EXPECT_EQ(c.message.catalogue(), "quay0:messages");
        EXPECT_EQ(c.message.id(), c.id);
        EXPECT_EQ(c.message.arguments(), c.arguments);
        EXPECT_EQ(c.report(false), "quay0:messages:" + c.id + ": " + c.plain);
        std::string const withBoth = c.withBoth.empty() ? "X.p: " + c.plain + " (the value was 1)" : c.withBoth;
        EXPECT_EQ(c.report(true), "quay0:messages:" + c.id + ": " + withBoth);
    }
}

TEST(Messages, TheScriptLayersOwnHaveSentencesToo) {
    EXPECT_EQ(Exception<Message>(Message("ZELDRA:class", "InvalidHandle")).what(),
              std::string("ZELDRA:class:InvalidHandle: the handle is empty or its element was destroyed"));
    EXPECT_EQ(Exception<Message>(Message("ZELDRA:class", "Unheard")).what(), std::string("ZELDRA:class:Unheard"));
}

TEST(Exceptions, KeepTheirTypeThroughCloneAndRethrow) {
    std::unique_ptr<Error> kept;
    try {
        quay::zero::reportException(UniquenessConstraint().about(u"VarTsUIDEntry.varTsIdx").withValue(u"1"));
    } catch (Error const& e) {
        kept = e.clone();
    }
    ASSERT_TRUE(kept);
    EXPECT_STREQ(kept->what(), "quay0:messages:UniquenessConstraint: VarTsUIDEntry.varTsIdx: 1 is in use");
    EXPECT_THROW(kept->rethrow(), Exception<UniquenessConstraint>);
    EXPECT_EQ(kept->GetBaseMsgIDObj().subject(), u"VarTsUIDEntry.varTsIdx");
}

TEST(Exceptions, StayReadableAfterBeingMovedFrom) {
    static_assert(std::is_nothrow_copy_constructible_v<Exception<NoSuchType>>);
    Exception<NoSuchType> first(NoSuchType(u"Integer"));
    Exception<NoSuchType> const second(std::move(first));  // NOLINT(performance-move-const-arg): it copies
    EXPECT_STREQ(first.what(), second.what());             // NOLINT(bugprone-use-after-move): so this is left
}

TEST(Exceptions, AreAlsoTheStandardExceptionAskedFor) {
    struct Here;
    struct There;
    auto const raise = [] { throw Exception<InvalidValue, std::bad_cast, Here>(InvalidValue()); };
    EXPECT_THROW(raise(), std::bad_cast);
    EXPECT_THROW(raise(), Error);
    try {
        raise();
    } catch (Exception<InvalidValue, std::bad_cast, There> const&) {
        FAIL() << "the tag doesn't tell them apart";
    } catch (Exception<InvalidValue, std::bad_cast, Here> const&) {
    }
    EXPECT_THROW(throw keel::core::except::bad_alloc(), std::bad_alloc);
}

}  // namespace
