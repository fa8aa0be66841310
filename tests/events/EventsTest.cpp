#include "kovabase/events/KOVAEndTaskEvent.h"
#include "kovabase/events/KOVAFileTaskEvents.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVAProgressEvents.h"
#include "kovabase/events/KOVATaskEvents.h"
#include "kovabase/foundation/KOVAError.h"
#include "kovabase/io/KOVAFileHeader.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "tests/events/EventRecorder.h"

#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string_view>

using kova::test::describe;
using kova::test::EventRecorder;

namespace {

struct NamedEvent {
  std::string title;
  std::unique_ptr<KOVCEvent> event;
};

template <typename Event, typename... Arguments>
void add(std::vector<NamedEvent>& events, const char* title, Arguments&&... arguments) {
  events.push_back({title, std::make_unique<Event>(std::forward<Arguments>(arguments)...)});
}

KOVAFileHeader makeHeader(int configurations) {
  KOVAFileHeader header;
  header.AddEntry("Author", "Ida");
  header.AddEntry("Schema", "AP214");
  for (int i = 1; i < configurations; ++i) {
    header.AddConfiguration();
    header.AddEntry("Name", "second model");
  }
  return header;
}

// One of each class and of each form of its text. The senders of the texts are gone when this
// returns.
std::vector<NamedEvent> makeEvents() {
  static KOVAFileHeader noEntries;
  static KOVAFileHeader oneModel = makeHeader(1);
  static KOVAFileHeader twoModels = makeHeader(2);
  const std::string text = "a text of the sender";
  const char* const sent = text.c_str();
  const KOVAResult success(KOVAResultCode::kSuccess);
  const KOVAResult failure(KOVAResultCode::kFailure);
  const KOVAResult aborted(KOVAResultCode::kAborted);

  std::vector<NamedEvent> events;
  add<KOVAMessageEvent>(events, "message", "%s, %d", sent, 7);
  add<KOVAMessageEvent>(events, "message without label", "%s", false, sent);
  add<KOVAMessageEvent>(events, "message as it stands", "100%d %s", true, true);
  add<KOVAMessageEvent>(events, "empty message", "%s", "");
  add<KOVAWarningEvent>(events, "warning", "%s", sent);
  add<KOVAErrorEvent>(events, "error text", "%s", sent);
  add<KOVAErrorEvent>(events, "empty error text", "%s", "");
  add<KOVAErrorEvent>(events, "error with description",
                      KOVAError(KOVAResultCode::kFailure, KOVAString(sent)));
  add<KOVAErrorEvent>(events, "error without description", KOVAError(KOVAResultCode::kFailure));
  add<KOVAErrorEvent>(events, "error that is none", KOVAError(KOVAResultCode::kSuccess));
  add<KOVADebugEvent>(events, "debug", "%s", sent);
  add<KOVADebugDumpEvent>(events, "linker map", KOVADebugDumpEvent::kRepLinkerMap, 3);
  add<KOVADebugDumpEvent>(events, "other dump", static_cast<KOVADebugDumpEvent::dumpType>(1), -3);
  add<KOVAVerboseEvent>(events, "verbose", "%s", sent);
  add<KOVATestEvent>(events, "test", "%s", sent);
  add<KOVAAssertEvent>(events, "assertion", "%s", sent);

  add<KOVCConversionTaskEvent>(events, "conversion");
  add<KOVAStartReadFileTaskEvent>(events, "start of reading", KOVAString(sent));
  add<KOVAEndReadFileTaskEvent>(events, "end of reading, no header", success, nullptr);
  add<KOVAEndReadFileTaskEvent>(events, "end of reading, no entries", success, &noEntries);
  add<KOVAEndReadFileTaskEvent>(events, "end of reading, one model", success, &oneModel);
  add<KOVAEndReadFileTaskEvent>(events, "end of reading, two models", success, &twoModels);
  add<KOVAStartWriteFileTaskEvent>(events, "start of writing", KOVAFilePath("a/b.obj"));
  add<KOVAEndWriteFileTaskEvent>(events, "end of writing", success, KOVAString("out.obj"));
  add<KOVAEndWriteFileTaskEvent>(events, "end of writing, aborted", aborted, KOVAString("a b"));
  add<KOVAEndWriteFileTaskEvent>(events, "end of writing, failed, no name", failure, KOVAString());
  add<KOVAStartReadEntitiesTaskEvent>(events, "start of entities");
  add<KOVAEndReadEntitiesTaskEvent>(events, "end of entities",
                                    KOVAResult(KOVAResultCode::kPartialSuccess));
  add<KOVAStartPreprocessDocumentEvent>(events, "start of source preprocessing", true);
  add<KOVAStartPreprocessDocumentEvent>(events, "start of target preprocessing", false);
  add<KOVAEndPreprocessDocumentEvent>(events, "end of source preprocessing", success, true);
  add<KOVAEndPreprocessDocumentEvent>(events, "end of target preprocessing", success, false);
  add<KOVAStartPostprocessDocumentEvent>(events, "start of postprocessing");
  add<KOVAEndPostprocessDocumentEvent>(events, "end of postprocessing", success);
  add<KOVAEndOptionsTaskEvent>(events, "end of options", success);
  add<KOVAEndTaskEvent>(events, "end of a task", failure, sent, "id");
  add<KOVAEndTaskEvent>(events, "quiet end of a task", 0L, sent, "id", 60, true);
  add<KOVAEndTranslationTaskEvent>(events, "end of translation", success, false, 4U);
  add<KOVAEndTranslationTaskEvent>(events, "end of translation, failed, count unknown", failure,
                                   false);
  add<KOVAEndTranslationTaskEvent>(events, "end of translation, partial, part in assembly",
                                   KOVAResult(KOVAResultCode::kPartialSuccess), true, 4000000000U);

  add<KOVAStartTranslateRepairEvent>(events, "repair", sent, "Repairing", 12, 55);
  add<KOVAStartTranslateRepairEvent>(events, "repair without second text", sent, nullptr, 12, 50);
  add<KOVAConversionStageEvent>(events, "stage", sent, 2, 0.5, true);
  add<KOVAThirdPartyProgressEvent>(events, "progress", 0.25);
  return events;
}

// Name, level, the task's data and the description.
std::string tell(KOVCEvent& event) {
  std::ostringstream text;
  text << event.GetEventName() << ", level " << event.GetLevel();
  if (auto* const task = dynamic_cast<KOVCTaskEvent*>(&event)) {
    char* identifier = nullptr;
    const int length = task->GetTaskIdentifier(identifier);
    text << ", " << (task->GetKind() == kKOVATaskStart ? "start" : "end") << " of '"
         << std::string(identifier, static_cast<std::size_t>(length)) << "' shown as '"
         << task->GetTaskName() << "'" << (event.IsTimed() ? ", timed" : "");
  }
  std::string description = describe(event);
  constexpr std::string_view kFinishTime = "Finish Time : ";
  if (description.starts_with(kFinishTime)) {
    const std::size_t end = description.find('\n');
    description.replace(kFinishTime.size(), end - kFinishTime.size(), "(a time)");
  }
  return text.str() + "\n" + description;
}

std::string readGolden() {
  std::ifstream stream(KOVA_GOLDEN "/descriptions.txt", std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

TEST(EventsTest, NamesLevelsTasksAndDescriptionsAreTheGoldenOnes) {
  std::string transcript;
  for (const NamedEvent& named : makeEvents()) {
    transcript += "## " + named.title + "\n" + tell(*named.event);
  }
  EXPECT_EQ(transcript, readGolden());
}

TEST(EventsTest, ClonesTellTheSameWhenTheirSenderIsGone) {
  for (NamedEvent& named : makeEvents()) {
    SCOPED_TRACE(named.title);
    const std::string told = tell(*named.event);
    const std::unique_ptr<KOVCEvent> clone(named.event->Clone());
    const KOVCEvent& sent = *named.event;
    const KOVCEvent& cloned = *clone;
    EXPECT_EQ(typeid(cloned), typeid(sent));
    named.event.reset();
    EXPECT_EQ(tell(*clone), told);
  }
}

TEST(EventsTest, ListenersCanAskForWhatAnEventCarries) {
  const KOVAMessageEvent message("%d files", 5);
  EXPECT_STREQ(message.GetMessage(), "5 files");
  EXPECT_TRUE(message.HasLabel());
  EXPECT_EQ(KOVAMessageEvent("%s", "").GetMessage(), nullptr);

  EXPECT_STREQ(KOVAStartReadFileTaskEvent("in.stl").GetFileName(), "in.stl");
  EXPECT_EQ(KOVAStartReadFileTaskEvent("").GetFileName(), nullptr);
  EXPECT_EQ(KOVAStartReadFileTaskEvent(KOVAString()).GetFileName(), nullptr);
  EXPECT_EQ(KOVAStartWriteFileTaskEvent(KOVAFilePath("a/b")).GetFilePath().GetPath(),
            KOVAFilePath("a/b").GetPath());

  const KOVAConversionStageEvent stage("meshing", 2, 0.5, true);
  EXPECT_STREQ(stage.GetStageName(), "meshing");
  EXPECT_EQ(stage.GetNumber(), 2);
  EXPECT_EQ(stage.GetFraction(), 0.5);
  EXPECT_TRUE(stage.GetFlag());
  EXPECT_EQ(stage.GetThreadID(), 0);

  KOVAEndTaskEvent end(0L, "name", "id");
  end.setTaskResult(KOVAResult(KOVAResultCode::kAborted));
  EXPECT_EQ(end.getTaskResult(), KOVAResultCode::kAborted);

  double progress = 0.0;
  KOVAThirdPartyProgressEvent(0.75).GetProgress(progress);
  EXPECT_EQ(progress, 0.75);
}

TEST(EventsTest, NullTextsAndStreamsAreEmpty) {
  const char* const none = nullptr;
  KOVAEndTaskEvent end(0L, nullptr, nullptr);
  EXPECT_STREQ(end.GetEventName(), "");
  EXPECT_STREQ(end.GetTaskName(), "");
  end.GetFormattedDescription(nullptr);
  end.SetEventName("renamed");
  EXPECT_STREQ(end.GetEventName(), "renamed");

  EventRecorder recorder;
  KOVAMessageEvent::Fire(none);
  KOVAMessageEvent::Fire(none, false, true);
  KOVAWarningEvent::Fire(20, none);
  KOVAStartReadFileTaskEvent::Fire(none);
  KOVAConversionStageEvent::Fire(nullptr, 0, 0.0, false);
  EXPECT_EQ(recorder.texts,
            (std::vector<std::string>{"Message : \n", "\n", "Warning : \n", "", ""}));
}

TEST(EventsTest, FiredErrorsCarryTheirPlaceAndReturnTheirResult) {
  EventRecorder recorder;
  KOVAError error(KOVAResultCode::kFileOpenError, "no such drive");
  EXPECT_EQ(KOVAErrorEvent::Fire(error, "reader.cpp", 42), KOVAResultCode::kFileOpenError);
  EXPECT_EQ(error.GetSourceFile(), KOVAString("reader.cpp"));
  EXPECT_EQ(error.GetSourceLine(), 42);
  KOVAError::Printf("%s", "100%d");
  EXPECT_EQ(recorder.texts,
            (std::vector<std::string>{"Error Description : no such drive\n", "Error : 100%d\n"}));
  EXPECT_EQ(recorder.levels, (std::vector<KOVAEventLevel>{80, 80}));
}

TEST(EventsTest, AHeaderIsLeftWithItsFirstConfigurationActiveEvenWhenItThrows) {
  struct ThrowingHeader : KOVAFileHeader {
    void SetActiveConfiguration(int index) override { active = index; }
    int GetNumberOfConfigurations() override { return 3; }
    int GetNumberOfEntries() override { return active == 2 ? 1 : 0; }
    void Write(KOVAStreamFormatter&) override {
      if (active == 1) throw std::runtime_error("damaged header");
    }
    int active = 0;
  };
  ThrowingHeader header;
  KOVAEndReadFileTaskEvent event(KOVAResult(KOVAResultCode::kSuccess), &header);
  EXPECT_THROW(describe(event), std::runtime_error);
  EXPECT_EQ(header.active, 0);
}

TEST(EventsTest, TextsAreCutAtTheirLimit) {
  const std::string longText(5000, 'x');
  const std::string cut(1023, 'x');
  EXPECT_EQ(KOVAMessageEvent("%s", longText.c_str()).GetMessage(), cut);
  EXPECT_EQ(KOVAErrorEvent("<%*s>", 3000, "right").GetMessage(), "<" + std::string(1022, ' '));
  EXPECT_EQ(KOVAMessageEvent(longText.c_str(), true, true).GetMessage(), longText);

  EventRecorder recorder;
  KOVAVerboseEvent::Fire("%s", longText.c_str());
  KOVAWarningEvent::Fire(3000, "%s", longText.c_str());
  KOVAWarningEvent::Fire(2000000000, "%s%%", longText.c_str());
  KOVAWarningEvent::Fire(4, "%s", longText.c_str());
  KOVAWarningEvent::Fire(-1, "%s", longText.c_str());
  EXPECT_EQ(recorder.texts,
            (std::vector<std::string>{cut + "\n", "Warning : " + longText.substr(0, 3000) + "\n",
                                      "Warning : " + longText + "%\n", "Warning : xxxx\n",
                                      "Warning : \n"}));
}

namespace {

KOVABASE_PRINTF(1, 2) void expectSameAsPrintf(const char* format, ...) {
  char expected[1024];
  char text[1100];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(expected, sizeof expected, format, arguments);
  va_end(arguments);
  // The protected constructor is the one that takes a list.
  struct Event : KOVADebugEvent {
    KOVABASE_PRINTF(3, 0)
    Event(va_list list, const char* eventFormat) : KOVADebugEvent(list, eventFormat) {}
  };
  va_start(arguments, format);
  const Event event(arguments, format);
  va_end(arguments);
  std::snprintf(text, sizeof text, "%s", event.GetMessage() != nullptr ? event.GetMessage() : "");
  EXPECT_STREQ(text, expected) << "format '" << format << "'";
}

void expectNumbersSameAsPrintf() {
  const double doubles[] = {0.0,      -0.0,      0.5, 1.5,    2.5,    0.125,    -0.0004999, 1e-320,
                            1e22,     1e300,     0.1, 123.45, 9.9995, 99.5,     -1e15,      5e-324,
                            INFINITY, -INFINITY, NAN, 1.005,  2.675,  1e9 + 0.5};
  for (const double value : doubles) {
    expectSameAsPrintf("%.0f|%.1f|%.2f|%.3f|%.6f|%.9f", value, value, value, value, value, value);
    expectSameAsPrintf("%f|%g|%10.3f|%-8.2f|%+.1f|%.12f", value, value, value, value, value, value);
  }
}

}  // namespace

TEST(EventsTest, FormattingGivesWhatPrintfGives) {
  for (const int value : {0, 7, -7, std::numeric_limits<int>::min()}) {
    expectSameAsPrintf("%d|%i|%u|%x|%5d|%-5d|%05d|%+d", value, value, static_cast<unsigned>(value),
                       static_cast<unsigned>(value), value, value, value, value);
  }
  expectSameAsPrintf("%ld %lld %zu", -5000000000L, 7LL, sizeof(int));
  expectSameAsPrintf("%s|%c|%%|%.3s|%8s", "text", 'c', "truncated", "right");
  expectSameAsPrintf("before%cafter", '\0');
  expectSameAsPrintf("%d%s", 1, "");
  expectSameAsPrintf("%ls", L"wide");
  expectNumbersSameAsPrintf();
  // The process's locale decides about the decimal point.
  if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr) {
    expectNumbersSameAsPrintf();
    std::setlocale(LC_NUMERIC, "C");
  }
}

TEST(EventsTest, WhatPrintfCouldWriteBeforeAnErrorIsKept) {
  std::setlocale(LC_ALL, "C");
  EXPECT_STREQ(KOVAMessageEvent("kept %ls lost", L"\x4e2d").GetMessage(), "kept ");
}

TEST(EventsTest, LevelsAreReadFromNumbersAndNames) {
  struct {
    const char* text;
    KOVAEventLevel level;
  } const cases[] = {
      {"0", 0},        {"75", 75},          {"-1", -1},      {"debug", 10},   {"TEST", 20},
      {"Verbose", 30}, {"info", 50},        {"message", 50}, {"WARNING", 70}, {"error", 80},
      {"assert", 90},  {nullptr, 33},       {"", 33},        {"warn", 33},    {"70x", 33},
      {" 70", 33},     {"99999999999", 33}, {"0x10", 33}};
  for (const auto& [text, level] : cases) {
    EXPECT_EQ(KOVCEvent::GetLevel(text, 33), level) << (text != nullptr ? text : "null");
  }
}
