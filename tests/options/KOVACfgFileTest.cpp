#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/options/KOVACfgFile.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace std::string_literals;
using Lines = std::vector<std::string>;

namespace {

KOVAResult load(KOVACfgFile& file, const std::string& text) {
  FILE* stream = std::tmpfile();
  std::fwrite(text.data(), 1, text.size(), stream);
  std::rewind(stream);
  const KOVAResult result = file.Load(stream);
  std::fclose(stream);
  return result;
}

Lines errorsOf(const KOVACfgFile& file) {
  Lines errors;
  for (int i = 0; i < file.GetErrorCount(); ++i) errors.push_back(file.GetErrorMessage(i));
  return errors;
}

std::string utf8(const KOVAString& text) {
  std::string bytes(static_cast<std::size_t>(text.getConvertToUTF8Size()), '\0');
  text.convertToUTF8(bytes.data(), static_cast<int>(bytes.size()));
  bytes.pop_back();
  return bytes;
}

// Every section with its keys and values, "[section]" before "key=<value><value>".
Lines contentsOf(const KOVACfgFile& file, const std::vector<const char*>& sections) {
  Lines contents;
  for (const char* name : sections) {
    const KOVACfgFileSection* section = file.findSection(name);
    if (section == nullptr) continue;
    contents.push_back("[" + utf8(section->GetName()) + "]");
    for (int i = 0; i < section->GetNumKeys(); ++i) {
      const KOVACfgFileKey* key = section->GetKey(i);
      std::string line = utf8(key->GetName()) + "=";
      for (int k = 0; k < key->GetNumValues(); ++k) line += "<" + utf8(key->GetValue(k)) + ">";
      contents.push_back(line);
    }
  }
  return contents;
}

}  // namespace

TEST(KOVACfgFile, ReadsSectionsKeysAndValues) {
  KOVACfgFile file;
  EXPECT_EQ(load(file,
                 "\xEF\xBB\xBF\t Name = value \r\n"
                 "; comment\n# comment\n\n"
                 "Name: 3\n"
                 "a=b:c\na:b=c\nx = 1 ; note\n"
                 "list=1,2, 3,\n"
                 "quoted=\"a,b\"\n"
                 "cut=here\0not here\n"
                 "\xC3\xA9=\xC3\xA8\n"
                 "[ My Section ] rest]\nk=1\n"
                 "[]\nback=yes\n"
                 "[B]\nk=1\n[ My Section ] rest]\nk=2"s),
            KOVAResultCode::kSuccess);
  EXPECT_EQ(contentsOf(file, {"", "My Section ] rest", "B", "b"}),
            Lines({"[]", "Name=<value>", "Name=<3>", "a=<b:c>", "a:b=<c>", "x=<1 ; note>",
                   "list=<1><2>< 3><>", "quoted=<\"a><b\">", "cut=<here>", "\xC3\xA9=<\xC3\xA8>",
                   "back=<yes>", "[My Section ] rest]", "k=<1>", "k=<2>", "[B]", "k=<1>"}));
  EXPECT_EQ(errorsOf(file), Lines());
  EXPECT_EQ(file.GetArraySize("list"), 4);
  KOVAString text;
  EXPECT_TRUE(file.GetString("Name", text));
  EXPECT_EQ(utf8(text), "value");
  EXPECT_EQ(utf8(file.findSection(nullptr)->findKey("list")->GetAllValues()), "1,2, 3,");
  for (const int past : {4, -1}) {
    EXPECT_TRUE(file.GetString("list", text, past));
    EXPECT_EQ(utf8(text), "");
  }
  EXPECT_FALSE(file.ExistKey("name"));
  EXPECT_FALSE(file.ExistKey(nullptr));
  EXPECT_FALSE(file.ExistKey("k", "Absent"));
  EXPECT_EQ(file.findSection("")->GetKey(99), nullptr);
}

TEST(KOVACfgFile, CollectsSyntaxErrorsAndGoesOn) {
  KOVACfgFile file;
  EXPECT_EQ(load(file, "ok=1\n[Broken\n\nno separator %s\nempty =\n= 5\nlast=2\n"),
            KOVAResultCode::kFailure);
  EXPECT_EQ(errorsOf(file),
            Lines({"Incorrect syntax: line 2:[Broken *** \"[section name]' expected.",
                   "Incorrect syntax: line 4:no separator %s *** \"key=value\" expected",
                   "Incorrect syntax: line 5:empty = *** \"key=value\" expected",
                   "Incorrect syntax: line 6:= 5 *** \"key=value\" expected"}));
  EXPECT_EQ(contentsOf(file, {""}), Lines({"[]", "ok=<1>", "last=<2>"}));
  EXPECT_EQ(file.GetErrorMessage(4), nullptr);
  EXPECT_EQ(file.GetErrorMessage(-1), nullptr);
  // Errors from before count for the next load too.
  EXPECT_EQ(load(file, "fine=1\n"), KOVAResultCode::kFailure);
}

TEST(KOVACfgFile, TypedGettersCollectWhatDoesNotConvert) {
  KOVACfgFile file;
  load(file, "i= 12 \nd=2.5e1\nb=True\nl=FALSE\none=1\ntwo=2\nyes=yes\n[s]\ni=7\n");
  int i = 0;
  double d = 0.0;
  bool b = false;
  int l = 9;
  EXPECT_TRUE(file.GetInt("i", i) && i == 12);
  EXPECT_TRUE(file.GetInt("i", i, 0, "s") && i == 7);
  EXPECT_TRUE(file.GetDouble("d", d) && d == 25.0);
  EXPECT_TRUE(file.GetDouble("i", d) && d == 12.0);
  EXPECT_TRUE(file.GetBool("b", b) && b);
  EXPECT_TRUE(file.GetLogical("l", l) && l == 0);
  EXPECT_TRUE(file.GetLogical("one", l) && l == 1);
  EXPECT_FALSE(file.GetInt("absent", i));
  EXPECT_EQ(errorsOf(file), Lines());

  EXPECT_FALSE(file.GetInt("d", i));
  EXPECT_FALSE(file.GetDouble("yes", d));
  EXPECT_FALSE(file.GetBool("one", b));
  EXPECT_FALSE(file.GetLogical("two", l));
  EXPECT_FALSE(file.GetLogical("yes", l));
  EXPECT_EQ(
      errorsOf(file),
      Lines({"Incorrect syntax: key:d *** integer value expected.",
             "Incorrect syntax: key:yes *** double value expected.",
             "Incorrect syntax: key:one *** bool value \"true\" or \"false\" expected.",
             "Incorrect syntax: key:two *** integer \"0\" or \"1\" or string \"TRUE\" or \"FALSE\" "
             "expected.",
             "Incorrect syntax: key:yes *** integer \"0\" or \"1\" or string \"TRUE\" or \"FALSE\" "
             "expected."}));
  EXPECT_EQ(i, 7);
  EXPECT_EQ(l, 1);
}

TEST(KOVACfgFile, LongLinesComeInPiecesOf1023Bytes) {
  // The second key begins so many bytes into the line; it counts where a piece begins.
  for (const int offset : {1021, 1022, 1023, 1024, 65 * 1023}) {
    KOVACfgFile file;
    load(file, "k=" + std::string(static_cast<std::size_t>(offset - 2), 'v') + "z=1\n");
    EXPECT_EQ(file.findSection("")->findKey("k")->GetValue(0).length(), 1021) << offset;
    EXPECT_EQ(file.ExistKey("z"), offset % 1023 == 0) << offset;
  }
}

TEST(KOVACfgFile, FindsManyKeysByTheirFirstOccurrence) {
  std::string text;
  for (int i = 0; i < 1000; ++i)
    text += "key" + std::to_string(i % 500) + "=" + std::to_string(i) + "\n";
  KOVACfgFile file;
  load(file, text);
  KOVACfgFileSection* section = file.findSection("");
  for (int i = 0; i < 500; ++i) {
    int value = -1;
    EXPECT_TRUE(file.GetInt(("key" + std::to_string(i)).c_str(), value));
    EXPECT_EQ(value, i);
  }
  section->createKey("late")->AppendValue("1");
  EXPECT_TRUE(file.ExistKey("late"));
}

TEST(KOVACfgFile, WhatCannotBeReadIsSaid) {
  KOVACfgFile file;
  EXPECT_EQ(file.Load(static_cast<FILE*>(nullptr)), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(file.Load(KOVAFilePath()), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(file.Load(KOVAFilePath("/does/not/exist.cfg", false)), KOVAResultCode::kFileOpenError);
  EXPECT_EQ(file.Load(KOVAFilePath("/tmp", false)), KOVAResultCode::kFileOpenError);
}
