#include "core/settings/password.h"

#include <gtest/gtest.h>

#include "tests/support/counting_random_source.h"

namespace tarnwick {
namespace {

void expectHex(const std::string& text, std::size_t length) {
  EXPECT_EQ(text.size(), length);
  EXPECT_EQ(text.find_first_not_of("0123456789abcdef"), std::string::npos) << text;
}

TEST(Password, IsTheHexOfTwelveRandomBytes) {
  CountingRandomSource random;
  EXPECT_EQ(makePassword(random), "000102030405060708090a0b");
  EXPECT_EQ(makePassword(random), "0c0d0e0f1011121314151617");
}

TEST(Password, IsAUuidWhenTheRandomSourceFails) {
  CountingRandomSource random;
  random.fails = true;
  const std::string password = makePassword(random);
  expectHex(password, 32);
  EXPECT_NE(password, makePassword(random));
}

TEST(Password, TheUuidNeedsNoFileOfTheKernel) {
  for (const char* file : {"/nonexistent", "/proc/self/comm", "/dev/null", "/"}) {
    const std::string digits = randomUuidDigits(file);
    expectHex(digits, 32);
    EXPECT_EQ(digits[12], '4') << "the version of a random UUID";
    EXPECT_NE(digits, randomUuidDigits(file));
  }
}

}  // namespace
}  // namespace tarnwick
