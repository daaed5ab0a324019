#include <clocale>
#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>

namespace {

/// Lets a program's tests run in the locale of its environment, as an application with a user interface does.
class ForeignPlaces final : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_NE(std::setlocale(LC_ALL, ""), nullptr);
        if (std::getenv("TARNWICK_TEST_FOREIGN_PLACES") != nullptr) {
            ASSERT_STREQ(std::localeconv()->decimal_point, ",");
            ASSERT_STREQ(std::setlocale(LC_CTYPE, nullptr), "tr_TR.UTF-8");
            ASSERT_STREQ(std::setlocale(LC_TIME, nullptr), "th_TH.UTF-8");
        }
    }
};

// GoogleTest takes the ownership.
[[maybe_unused]] const auto* const installed =
    testing::AddGlobalTestEnvironment(std::make_unique<ForeignPlaces>().release());

}  // namespace
