#include "kovabase/options/KOVAArgs.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

/// A command line or a list of names, as `main` would get it.
class Words {
 public:
  Words(std::initializer_list<const char*> words) {
    for (const char* word : words) _texts.emplace_back(word);
    for (std::string& text : _texts) _pointers.push_back(text.data());
  }
  int count() const { return static_cast<int>(_pointers.size()); }
  char** data() { return _pointers.data(); }

 private:
  std::vector<std::string> _texts;
  std::vector<char*> _pointers;
};

// Every option with its argument, then what is left: "name:argument name | rest".
std::string scan(Words line, Words names) {
  KOVAArgs args(line.count(), line.data());
  std::string result;
  for (int which = 0; args.GetNextOption(names.count(), names.data(), &which);) {
    const std::string name = names.data()[which];
    result += name;
    char* argument = nullptr;
    if (name.back() == ':' && args.GetOptionArgument(&argument)) result += argument;
    result += ' ';
  }
  result += '|';
  while (const char* argument = args.GetNextArg()) result += std::string(" ") + argument;
  return result;
}

}  // namespace

TEST(KOVAArgs, FindsOptionsAndTheirArguments) {
  EXPECT_EQ(scan({"p", "-verb"}, {"verbose", "v"}), "verbose |");
  EXPECT_EQ(scan({"p", "-v"}, {"verbose", "v"}), "verbose |");
  EXPECT_EQ(scan({"p", "-v"}, {"v", "verbose"}), "v |");
  EXPECT_EQ(scan({"p", "-xo", "file", "rest"}, {"o:", "x"}), "x o:file | rest");
  EXPECT_EQ(scan({"p", "-abc", "-b"}, {"a", "b", "c"}), "a b c b |");
  EXPECT_EQ(scan({"p", "in", "-a", "mid", "-b", "out"}, {"a", "b"}), "a b | out");
  EXPECT_EQ(scan({"p", "-unknown", "-a"}, {"a"}), "a |");
  EXPECT_EQ(scan({"p", "-o", "-a"}, {"o:", "a"}), "o: a |");  // no argument there
  EXPECT_EQ(scan({"p", "-o", "-", "x"}, {"o:"}), "o:- | x");  // a dash alone is one
  EXPECT_EQ(scan({"p", "-o"}, {"o:"}), "o: |");
  EXPECT_EQ(scan({"p", "a", "b"}, {"a"}), "| a b");
  EXPECT_EQ(scan({"p", "-", "b"}, {"a"}), "| - b");
  EXPECT_EQ(scan({"p", "--long"}, {"long", "-long"}), "-long |");
  EXPECT_EQ(scan({"p", "-long"}, {""}), "| -long");
  EXPECT_EQ(scan({"p"}, {"a"}), "|");
  EXPECT_EQ(scan({}, {"a"}), "|");
}

// The fuzz target's model checks every order of calls; here are the two that callers fall for.
TEST(KOVAArgs, GroupsEndWithAnArgumentAndNotWithAnUnknownLetter) {
  Words names{"a", "b"};
  int which = 9;
  char* argument = nullptr;
  Words line{"p", "-axb", "-abb", "xyz", "-b"};
  KOVAArgs args(line.count(), line.data());
  EXPECT_TRUE(args.GetNextOption(2, names.data(), &which));
  EXPECT_FALSE(args.GetNextOption(2, names.data(), &which));
  EXPECT_EQ(which, -1);
  EXPECT_TRUE(args.GetNextOption(2, names.data(), &which));
  EXPECT_EQ(which, 1);
  EXPECT_TRUE(args.GetNextOption(2, names.data(), &which));
  EXPECT_TRUE(args.GetOptionArgument(&argument));
  EXPECT_STREQ(argument, "xyz");
  EXPECT_TRUE(args.GetNextOption(2, names.data(), &which));
  EXPECT_EQ(which, 1);
  EXPECT_EQ(args.GetNextArg(), nullptr);
}

TEST(KOVAArgs, WalksAndEndsSoftly) {
  Words line{"p", "one", "two"};
  KOVAArgs args(line.count(), line.data());
  char* argument = line.data()[0];
  EXPECT_FALSE(args.GetOptionArgument(nullptr));
  EXPECT_TRUE(args.Shift());
  EXPECT_TRUE(args.GetOptionArgument(&argument));
  EXPECT_STREQ(argument, "two");
  EXPECT_FALSE(args.GetOptionArgument(&argument));
  EXPECT_STREQ(argument, "two");

  int which = 9;
  Words names{"a"};
  char* holes[] = {nullptr, line.data()[0]};
  KOVAArgs empty(3, nullptr);
  EXPECT_EQ(empty.GetNextArg(), nullptr);
  EXPECT_FALSE(empty.Shift());
  EXPECT_FALSE(empty.GetNextOption(1, names.data(), &which));
  KOVAArgs negative(-1, line.data());
  EXPECT_EQ(negative.GetNextArg(), nullptr);

  Words optionLine{"p", "-a"};
  char* withNull[] = {optionLine.data()[0], nullptr, optionLine.data()[1]};
  KOVAArgs nulls(3, withNull);
  EXPECT_FALSE(nulls.GetNextOption(2, nullptr, &which));
  EXPECT_FALSE(nulls.GetNextOption(2, holes, &which));
  EXPECT_FALSE(nulls.GetNextOption(-1, names.data(), &which));
  EXPECT_TRUE(nulls.GetNextOption(1, names.data(), nullptr));
}
