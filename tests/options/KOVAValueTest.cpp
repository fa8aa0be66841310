#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/options/KOVAValue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

struct Readings {
  const char* what;
  KOVAValue value;
  int asInt;
  double asDouble;
  bool asBool;
  const char* asText;
};

std::string utf8(const KOVAString& text) {
  std::string bytes(static_cast<std::size_t>(text.getConvertToUTF8Size()), '\0');
  text.convertToUTF8(bytes.data(), static_cast<int>(bytes.size()));
  bytes.pop_back();
  return bytes;
}

}  // namespace

TEST(KOVAValue, ReadsEveryTypeAsEveryOther) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Readings table[] = {
      {"a double is a truth test", KOVAValue(0.3), 1, 0.3, true, "0.3"},
      {"zero", KOVAValue(-0.0), 0, -0.0, false, "-0"},
      {"not a number is not zero", KOVAValue(nan), 1, nan, true, "nan"},
      {"an integer", KOVAValue(-7), -7, -7.0, true, "-7"},
      {"a bool", KOVAValue(true), 1, 1.0, true, "true"},
      {"a bool word", KOVAValue(KOVAString("FALSE")), 0, 0.0, false, "FALSE"},
      {"a number's text", KOVAValue("12"), 12, 12.0, true, "12"},
  };
  for (const Readings& expected : table) {
    SCOPED_TRACE(expected.what);
    int integer = 99;
    double real = 99.0;
    bool boolean = !expected.asBool;
    KOVAString text;
    EXPECT_EQ(expected.value.GetValue(integer), KOVAResultCode::kSuccess);
    EXPECT_EQ(expected.value.GetValue(real), KOVAResultCode::kSuccess);
    EXPECT_EQ(expected.value.GetValue(boolean), KOVAResultCode::kSuccess);
    EXPECT_EQ(expected.value.GetValue(text), KOVAResultCode::kSuccess);
    EXPECT_EQ(integer, expected.asInt);
    if (std::isnan(expected.asDouble)) {
      EXPECT_TRUE(std::isnan(real));
    } else {
      EXPECT_EQ(real, expected.asDouble);
    }
    EXPECT_EQ(boolean, expected.asBool);
    EXPECT_EQ(utf8(text), expected.asText);
  }
}

TEST(KOVAValue, WhatCannotBeReadLeavesTheOutput) {
  int integer = 99;
  double real = 99.0;
  bool boolean = true;
  KOVAString text("kept");
  const KOVAValue nothing;
  EXPECT_EQ(nothing.GetValue(integer), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(nothing.GetValue(real), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(nothing.GetValue(boolean), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(nothing.GetValue(text), KOVAResultCode::kInvalidArgument);
  const KOVAValue word("bolt");
  EXPECT_EQ(word.GetValue(integer), KOVAResultCode::kFailure);
  EXPECT_EQ(word.GetValue(real), KOVAResultCode::kFailure);
  EXPECT_EQ(word.GetValue(boolean), KOVAResultCode::kFailure);
  EXPECT_EQ(integer, 99);
  EXPECT_EQ(real, 99.0);
  EXPECT_TRUE(boolean);
  EXPECT_EQ(utf8(text), "kept");
}

TEST(KOVAValue, EqualityNeedsTheSameType) {
  EXPECT_FALSE(KOVAValue() == KOVAValue());
  EXPECT_FALSE(KOVAValue(1) == KOVAValue(true));
  EXPECT_FALSE(KOVAValue(1) == KOVAValue(1.0));
  EXPECT_TRUE(KOVAValue("a") == KOVAValue(KOVAString("a")));
  EXPECT_FALSE(KOVAValue("a") == KOVAValue("A"));
  KOVAValue value("text");
  value.SetValue(3);
  EXPECT_TRUE(value == KOVAValue(3));
}

TEST(KOVAValue, PointersStayStaleUntilAssignment) {
  KOVAValue value(5);
  EXPECT_STREQ(static_cast<const char*>(value), "5");
  value.SetValue(6);
  EXPECT_STREQ(static_cast<const char*>(value), "5");
  value = KOVAValue("fresh");
  EXPECT_STREQ(static_cast<const char*>(value), "fresh");
  const KOVAValue copied(value);
  EXPECT_STREQ(static_cast<const char*>(copied), "fresh");
  EXPECT_EQ(static_cast<const char*>(KOVAValue()), nullptr);
  EXPECT_STREQ(static_cast<const char*>(KOVAValue(static_cast<const char*>(nullptr))), "");

  const unsigned short* wide = copied;
  EXPECT_TRUE(KOVAString(wide) == KOVAString("fresh"));
}

TEST(KOVAValue, HashesAreThoseOfTheIntegerMix) {
  // The mix written out with 32-bit arithmetic, as an independent check of shifts and signs.
  const auto mix = [](long long word) {
    const auto wrap = [](long long h) { return static_cast<long long>(static_cast<int>(h)); };
    long long h = wrap(word);
    h = wrap(h + ~wrap(h << 15));
    h = wrap(h ^ (h >> 10));
    h = wrap(h * 9);
    h = wrap(h ^ (h >> 6));
    h = wrap(h + ~wrap(h << 11));
    h = wrap(h ^ (h >> 16));
    return static_cast<unsigned>(h);
  };
  for (const int word : {0, 1, -1, 12345, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(KOVAValue(word).GetHashCode(), mix(word)) << word;
  }
  EXPECT_EQ(KOVAValue(true).GetHashCode(), mix(1));
  EXPECT_EQ(KOVAValue(-2.9).GetHashCode(), mix(-2));
  EXPECT_EQ(KOVAValue(-2147483648.5).GetHashCode(), mix(std::numeric_limits<int>::min()));
  for (const double outside : {2147483648.0, -2147483649.0, 1e300, HUGE_VAL, std::nan("")}) {
    EXPECT_EQ(KOVAValue(outside).GetHashCode(), 0U) << outside;
  }
  EXPECT_EQ(KOVAValue("a").GetHashCode(), KOVAString("a").hashCode());
  EXPECT_EQ(KOVAValue().GetHashCode(), 0U);
}

TEST(KOVAValue, DumpWritesBoolsAsIntegers) {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  for (const KOVAValue& value :
       {KOVAValue("x="), KOVAValue(true), KOVAValue(), KOVAValue(2), KOVAValue(0.5)}) {
    value.Dump(formatter);
  }
  EXPECT_STREQ(stream.GetBytes(), "x=120.5");
}
