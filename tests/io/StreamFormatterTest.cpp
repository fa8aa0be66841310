#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/strings/KOVAString.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>

namespace {

using Margin = KOVAStreamFormatter::KOVAStreamFormatterMargin;
using MarginHandle = KOVAStreamFormatter::KOVAStreamFormatterMarginHandle;
using Object = KOVAStreamFormatter::KOVAStreamFormatterObject;
using ObjectHandle = KOVAStreamFormatter::KOVAStreamFormatterObjectHandle;

class StreamFormatterTest : public testing::Test {
 protected:
  std::string Text() const { return {_stream.GetBytes(), _stream.GetByteCount()}; }

  KOVAStringOutputStream _stream;
  KOVAStreamFormatter _formatter{&_stream};
};

TEST_F(StreamFormatterTest, WritesEachTypeInItsPlainForm) {
  _formatter << "text" << ' ' << static_cast<const char*>(nullptr) << KOVAString("Größe", "UTF-8")
             << ' ' << true << false << ' ' << INT_MIN << ' ' << LONG_MIN << ' ' << UINT_MAX << ' '
             << ULONG_MAX << ' ' << short{-3} << ' ' << 0.1 << ' ' << -0.0 << ' ' << 1e300;
  EXPECT_EQ(Text(),
            "text Größe 10 -2147483648 -9223372036854775808 4294967295 18446744073709551615 -3 0.1 "
            "-0 1e+300");
}

template <class T>
concept CanBeWritten = requires(KOVAStreamFormatter& formatter, T value) {
  formatter << value;
};

// The address of an object must not silently become a bool.
static_assert(CanBeWritten<const char*> && !CanBeWritten<const int*> &&
              !CanBeWritten<const char16_t*>);

TEST_F(StreamFormatterTest, IndentsLinesThatHoldTextAndOnlyThose) {
  _formatter << "a" << KOVAEndLine;
  {
    Margin outer(_formatter);
    _formatter << "b" << KOVAEndLine << KOVAEndLine << KOVAString() << "c";
    {
      // A line that has begun stays where it is.
      Margin inner(_formatter);
      _formatter << "c" << KOVAEndLine << 7 << "\nraw" << KOVAEndLine;
    }
    _formatter << "d" << KOVAEndLine;
  }
  _formatter << "e";
  EXPECT_EQ(Text(), "a\n   b\n\n   cc\n      7\nraw\n   d\ne");
}

TEST_F(StreamFormatterTest, WritesDeepIndentation) {
  std::string expected;
  MarginHandle margins[40];
  for (int i = 0; i < 40; ++i) {
    margins[i] = new Margin(_formatter);
    _formatter << i << KOVAEndLine;
    expected += std::string(static_cast<std::size_t>(3 * (i + 1)), ' ') + std::to_string(i) + "\n";
  }
  EXPECT_EQ(Text(), expected);
}

TEST_F(StreamFormatterTest, ObjectsCloseTheLineThatIsOpen) {
  {
    Object part(_formatter, "Part");
    _formatter << "name = "
               << "wheel" << KOVAEndLine;
    const ObjectHandle box(new Object(_formatter, "Box"));
    _formatter << "min = 0";
    const ObjectHandle shared(box);
    Object nameless(_formatter, nullptr);
  }
  _formatter << "end" << KOVAEndLine;
  EXPECT_EQ(Text(), "Part {\n   name = wheel\n   Box {\n      min = 0{\n      }\n   }\n}\nend\n");
  EXPECT_EQ(_formatter.GetIndentation(), 0);
}

TEST(StreamFormatter, WithoutAStreamWritesNothing) {
  KOVAStreamFormatter formatter(nullptr);
  const Object object(formatter, "Part");
  formatter << 1 << KOVAString("x") << KOVAEndLine;
  EXPECT_TRUE(formatter.GetResult().IsSuccess());
}

}  // namespace
