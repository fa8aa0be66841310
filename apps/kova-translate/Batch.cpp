#include "apps/kova-translate/Batch.h"

#include "kovabase/concurrency/KOVASingletonThreadPool.h"
#include "kovabase/concurrency/KOVAThreadJob.h"
#include "kovabase/options/KOVAEnvironment.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace kova::translate {

namespace {

// As many as the pool would start, but not more than there are files.
int countWorkers(int wanted, std::size_t files) {
  if (wanted == 0) KOVAEnvironment::GetVariable("VEX_NUM_THREADS", wanted);
  if (wanted <= 0) wanted = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  return static_cast<int>(std::min(static_cast<std::size_t>(wanted), files));
}

}  // namespace

/// The translation of one file, which is the data of the work.
class Batch::Job : public KOVAThreadJob {
 public:
  explicit Job(Batch& batch) : _batch(batch) {}

  void Work(void* data) override { _batch.RunOne(*static_cast<FileRun*>(data)); }

 private:
  Batch& _batch;
};

ExitStatus Batch::Run(const std::vector<Task>& tasks) {
  _runs.clear();
  for (const Task& task : tasks) _runs.push_back(std::make_unique<FileRun>(task));
  _progress.Start(_runs);
  const int workers = countWorkers(_settings.jobs, _runs.size());
  if (workers > 1) {
    RunInParallel(workers);
  } else {
    _bus.SetProgressHandler([this] { _progress.Update(); });
    for (const auto& run : _runs) {
      RunOne(*run);
      Finish(*run);
    }
  }
  return _status;
}

void Batch::RunInParallel(int workers) {
  const KOVAString wanted(std::to_string(workers).c_str());
  KOVAEnvironment::PutVariable("VEX_NUM_THREADS", wanted);
  KOVASingletonThreadPool::Initialize(true);
  _bus.StartParallelMode();
  Job job(*this);
  for (const auto& run : _runs) KOVASingletonThreadPool::Enqueue(&job, run.get());
  // Long enough not to matter; only the display of the progress needs to look more often.
  const std::chrono::milliseconds longest(_progress.IsShown() ? 100 : 60000);
  for (const auto& run : _runs) {
    while (!_bus.DeliverFrom(run->outbox, longest)) _progress.Update();
    Finish(*run);
  }
  KOVASingletonThreadPool::WaitForAllCurrentJobs();
  _bus.EndParallelMode();
  KOVASingletonThreadPool::Shutdown();
}

void Batch::RunOne(FileRun& run) {
  const MessageBus::Sending sending(_bus, run.outbox);
  _translation.Run(run);
}

void Batch::Finish(FileRun& run) {
  _progress.Finish(run);
  _status = std::max(_status, run.status);
  if (_settings.statistics == Settings::Statistics::kNone) return;
  const std::string text = _settings.statistics == Settings::Statistics::kJson
                               ? run.statistics.ToJson()
                               : run.statistics.ToText();
  if (run.task.output == "-") {
    _console.PrintError(text);
  } else {
    _console.Print(text);
  }
}

}  // namespace kova::translate
