#include "apps/kova-translate/Progress.h"

#include "apps/kova-translate/Text.h"
#include "apps/kova-translate/system/StandardStreams.h"

#include <cstdio>

namespace kova::translate {

namespace {

constexpr std::chrono::milliseconds kInterval{100};

std::string describe(const FileRun& run, const char* stage, double fraction) {
  char number[32];
  std::snprintf(number, sizeof number, "%.3g", fraction);
  return "{\"file\": " + quoteJson(run.task.input) + ", \"stage\": \"" + stage +
         "\", \"fraction\": " + number + "}\n";
}

}  // namespace

ProgressDisplay::ProgressDisplay(Settings::Progress kind, Console& console)
    : _console(console),
      _isJson(kind == Settings::Progress::kJson),
      _columns(kind == Settings::Progress::kAuto ? getTerminalColumns() : 0) {}

void ProgressDisplay::Start(const std::vector<std::unique_ptr<FileRun>>& runs) {
  _runs = &runs;
  _shown.assign(runs.size(), -1.0);
  _next = std::chrono::steady_clock::now() + kInterval;
}

void ProgressDisplay::Update() {
  if (!IsShown()) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < _next) return;
  _next = now + kInterval;
  if (_isJson) {
    ShowChanges();
  } else {
    ShowLine();
  }
}

void ProgressDisplay::ShowChanges() {
  for (std::size_t i = _finished; i < _runs->size(); ++i) {
    const FileRun& run = *(*_runs)[i];
    const double fraction = run.outbox.GetFraction();
    if (!run.outbox.HasStarted() || fraction == _shown[i]) continue;
    _shown[i] = fraction;
    _console.PrintError(describe(run, run.outbox.IsWriting() ? "write" : "read", fraction));
  }
}

void ProgressDisplay::ShowLine() {
  if (_finished == _runs->size()) return;
  double sum = static_cast<double>(_finished);
  for (std::size_t i = _finished; i < _runs->size(); ++i) sum += (*_runs)[i]->outbox.GetFraction();
  const FileRun& run = *(*_runs)[_finished];
  char start[96];
  std::snprintf(start, sizeof start, "%3d %%  file %zu of %zu, %s ",
                static_cast<int>(100.0 * sum / static_cast<double>(_runs->size())), _finished + 1,
                _runs->size(), run.outbox.IsWriting() ? "writing" : "reading");
  std::string line = start + run.task.name;
  // Without the last column, in which some terminals go to the next line.
  auto most = static_cast<std::size_t>(_columns - 1);
  if (line.size() > most) {
    // Not inside a character of several bytes.
    while (most > 0 && (static_cast<unsigned char>(line[most]) & 0xC0) == 0x80) --most;
    line.resize(most);
  }
  Clear();
  _console.PrintError(line);
  _console.FlushErrors();
  _lineBytes = line.size();
}

void ProgressDisplay::Finish(const FileRun& run) {
  Clear();
  ++_finished;
  if (!_isJson) return;
  _console.PrintError(describe(run, run.status == kAllTranslated ? "done" : "failed", 1.0));
}

void ProgressDisplay::Clear() {
  if (_lineBytes == 0) return;
  _console.PrintError("\r" + std::string(_lineBytes, ' ') + "\r");
  _console.FlushErrors();
  _lineBytes = 0;
}

void ProgressDisplay::HandleEvent(KOVCEvent&) { Clear(); }

}  // namespace kova::translate
