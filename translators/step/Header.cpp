#include "translators/step/Header.h"

#include "translators/interface/Report.h"
#include "translators/step/StepText.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace kova::translators::step {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Record {
  std::string_view keyword;
  // What its parameters are called, ended by null.
  const char* names[8];
};

constexpr Record kRecords[] = {
    {"FILE_DESCRIPTION", {"Description", "Implementation level", nullptr}},
    {"FILE_NAME",
     {"Name", "Time stamp", "Author", "Organization", "Preprocessor version", "Originating system",
      "Authorisation", nullptr}},
    {"FILE_SCHEMA", {"Schema", nullptr}},
};

// The current parameter: a text, or a list of texts as one, divided by commas. Others are empty.
KOVAString takeTexts(Parameters& parameters) {
  std::string_view raw;
  if (parameters.TakeString(raw)) return decodeString(raw);
  KOVAString texts;
  if (!parameters.OpenList()) {
    parameters.Skip();
    return texts;
  }
  while (!parameters.IsAtEnd()) {
    if (!parameters.TakeString(raw)) {
      parameters.Skip();
      continue;
    }
    const KOVAString text = decodeString(raw);
    if (text.isEmpty()) continue;
    if (!texts.isEmpty()) texts.append(KOVAString(", "));
    texts.append(text);
  }
  parameters.CloseList();
  return texts;
}

bool readRecord(Scanner& scanner, std::string_view keyword, KOVAFileHeader& header) {
  const char* const list = scanner.GetPosition();
  if (!scanner.SkipParameters(false) || !scanner.Expect(';')) return false;
  const auto* const known =
      std::find_if(std::begin(kRecords), std::end(kRecords),
                   [keyword](const Record& record) { return record.keyword == keyword; });
  if (known == std::end(kRecords)) return true;
  Parameters parameters(list);
  for (const char* const* name = known->names; *name != nullptr && !parameters.IsAtEnd(); ++name) {
    const KOVAString value = takeTexts(parameters);
    if (!value.isEmpty()) header.AddEntry(KOVAString(*name), value);
  }
  return true;
}

}  // namespace

bool readHeader(Scanner& scanner, KOVAFileHeader& header, const Report& report,
                const Document& document) {
  for (const char c : kByteOrderMark) {
    if (scanner.IsAtEnd() || *scanner.GetPosition() != c) break;
    scanner.Accept(c);
  }
  std::string_view word;
  if (!scanner.SkipSpace() || !scanner.TakeWord(word)) return false;
  if (word != "ISO-10303-21") return scanner.Fail("it does not begin with 'ISO-10303-21;'");
  if (!scanner.Expect(';') || !scanner.TakeWord(word)) return false;
  if (word != "HEADER") return scanner.Fail("'HEADER;' is expected");
  if (!scanner.Expect(';')) return false;
  bool hasSchema = false;
  const std::size_t begin = scanner.GetOffset();
  for (;;) {
    if (!scanner.TakeWord(word)) return false;
    if (word == "ENDSEC") break;
    if (word.empty() || scanner.IsAtEnd() || *scanner.GetPosition() != '(') {
      return scanner.Fail(scanner.IsAtEnd() ? "the file ends within the header section"
                                            : "a keyword and its parameters, or 'ENDSEC;', are "
                                              "expected in the header section");
    }
    hasSchema |= word == "FILE_SCHEMA";
    if (!readRecord(scanner, word, header)) return false;
  }
  if (!hasSchema) {
    report.Warn(Place::Line(document.GetLine(begin)), "the header section names no schema");
  }
  return scanner.Expect(';');
}

}  // namespace kova::translators::step
