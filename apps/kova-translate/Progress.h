#pragma once

#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/Console.h"
#include "apps/kova-translate/Translation.h"
#include "kovabase/events/KOVCEventListener.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kova::translate {

/// Shows on standard error how far the files are, at most ten times a second: as a line of the
/// terminal, which goes before anything else is printed, or as lines of JSON, of which each file
/// has a last one: {"file": "part.stl", "stage": "done", "fraction": 1}. Main thread.
///
/// As a listener it stands before those that print.
class ProgressDisplay : public KOVCEventListener {
 public:
  ProgressDisplay(Settings::Progress kind, Console& console);

  bool IsShown() const { return _isJson || _columns > 0; }

  /// Once, before the first file. The runs must outlive their display.
  void Start(const std::vector<std::unique_ptr<FileRun>>& runs);
  /// Shows what has changed, when it is time for that.
  void Update();
  /// The file is done and everything about it was told.
  void Finish(const FileRun& run);

  /// Takes the line from the terminal.
  void Clear();
  void HandleEvent(KOVCEvent& event) override;

 private:
  void ShowLine();
  void ShowChanges();

  Console& _console;
  const bool _isJson;
  // Of the terminal; 0 when there is no line to show.
  const int _columns;
  const std::vector<std::unique_ptr<FileRun>>* _runs = nullptr;
  std::size_t _finished = 0;
  std::size_t _lineBytes = 0;
  std::vector<double> _shown;
  std::chrono::steady_clock::time_point _next;
};

}  // namespace kova::translate
