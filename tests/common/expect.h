// Expectations of exceptions that several tests share.
#pragma once

#include <keel/exception.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

/// Whether `f` fails with exactly the message M.
template <class M, class F>
testing::AssertionResult failsWith(F&& f) {
    try {
        f();
        return testing::AssertionFailure() << "nothing was thrown";
    } catch (keel::core::except::Exception<M, std::exception, void> const&) {
        return testing::AssertionSuccess();
    } catch (std::exception const& e) {
        return testing::AssertionFailure() << "thrown was: " << e.what();
    }
}

/// Whether `f` throws an E.
template <class E, class F>
testing::AssertionResult throws(F&& f) {
    try {
        f();
        return testing::AssertionFailure() << "nothing was thrown";
    } catch (E const&) {
        return testing::AssertionSuccess();
    } catch (std::exception const& e) {
        return testing::AssertionFailure() << "thrown was: " << e.what();
    }
}

/// How `f` fails: the name of the message, or a word for another exception that is thrown on purpose; "" if it doesn't
/// fail.
template <class F>
std::string failureOf(F&& f) {
    try {
        f();
        return {};
    } catch (keel::core::except::Error const& e) {
        return std::string(e.GetBaseMsgIDObj().id());
    } catch (std::out_of_range const&) {
        return "out_of_range";
    } catch (int) {
        return "int";
    }
}
