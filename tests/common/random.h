// Random tests. The number of runs and their length are fixed here, so that all test programs stay quick.
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <sstream>
#include <string>

namespace randomly {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int kEffort = 1;
#elif defined(NDEBUG)
inline constexpr int kEffort = 20;
#else
inline constexpr int kEffort = 4;
#endif

/// Checks a property with `runs` random arguments; RC_PARAMS can give another number, and the seed of a failure.
template <class Testable>
void check(int runs, Testable&& testable) {
    auto const* const test = testing::UnitTest::GetInstance()->current_test_info();
    rc::detail::TestMetadata metadata;
    metadata.id = std::string(test->test_suite_name()) + "/" + test->name();
    metadata.description = test->name();
    rc::detail::Configuration defaults;
    defaults.testParams = rc::detail::configuration().testParams;
    defaults.testParams.maxSuccess = runs;
    defaults.testParams.maxSize = 250;
    char const* const given = std::getenv("RC_PARAMS");
    auto const params = rc::detail::configFromString(given == nullptr ? "" : given, defaults).testParams;
    auto const result = rc::detail::checkTestable(std::forward<Testable>(testable), metadata, params);
    if (result.template is<rc::detail::SuccessResult>()) return;
    std::ostringstream text;
    rc::detail::printResultMessage(result, text);
    FAIL() << text.str() << "\nseed=" << params.seed;
}

}  // namespace randomly
