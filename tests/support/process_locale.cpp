// Puts the whole test program under the locale that ZOL_TEST_LOCALE names, if it names one. Linked
// into every test program: nothing in the library may depend on the process locale.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

namespace {

class ProcessLocale : public testing::Environment {
 public:
  void SetUp() override {
    const char* name = std::getenv("ZOL_TEST_LOCALE");
    if (name == nullptr) return;
    ASSERT_NE(std::setlocale(LC_ALL, name), nullptr) << name;
    ASSERT_STREQ(std::localeconv()->decimal_point, ",") << name;
  }
};

const auto* const k_locale = testing::AddGlobalTestEnvironment(new ProcessLocale);

}  // namespace
