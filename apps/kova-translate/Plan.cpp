#include "apps/kova-translate/Plan.h"

#include "apps/kova-translate/Text.h"
#include "apps/kova-translate/system/OutputFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <system_error>

namespace kova::translate {

namespace {

namespace fs = std::filesystem;

// Two spellings of one place become the same, also while nothing stands there.
std::string normalise(const std::string& path) {
  std::error_code error;
  const fs::path normal = fs::weakly_canonical(path, error);
  return error ? path : normal.string();
}

// Opens an input; null with the cause in words for what is no regular file.
std::unique_ptr<std::FILE, int (*)(std::FILE*)> openInput(const std::string& path,
                                                          std::string& reason) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(nullptr, std::fclose);
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  switch (status.type()) {
    case fs::file_type::regular: break;
    case fs::file_type::directory: reason = "it is a directory"; return file;
    case fs::file_type::fifo: reason = "it is a pipe; give '-' to read standard input"; return file;
    case fs::file_type::socket: reason = "it is a socket"; return file;
    case fs::file_type::block:
    case fs::file_type::character:
      reason = "it is a device; give '-' to read standard input";
      return file;
    default: break;
  }
  file.reset(std::fopen(path.c_str(), "rb"));
  if (file == nullptr) reason = std::error_code(errno, std::generic_category()).message();
  return file;
}

class Planner {
 public:
  explicit Planner(const Settings& settings) : _settings(settings) {
    for (const std::string& input : settings.inputs) {
      if (input != "-") _inputs.emplace(normalise(input), input);
    }
  }

  Task Plan(const std::string& input) {
    Task task;
    task.input = input;
    task.name = input == "-" ? "standard input" : quoteText(input);
    task.target = findFormat(_settings.format);
    task.output = GetOutput(input);
    task.preview = GetPreview(input);
    if (!FindSource(task) || !Claim(task.output, task) || task.preview.empty()) return task;
    Claim(task.preview, task);
    return task;
  }

 private:
  std::string GetOutput(const std::string& input) const {
    if (!_settings.output.empty()) return _settings.output;
    if (input == "-") return "-";
    fs::path output(input);
    output.replace_extension(getExtension(*findFormat(_settings.format)));
    if (_settings.outputFolder.empty()) return output.string();
    return (fs::path(_settings.outputFolder) / output.filename()).string();
  }

  std::string GetPreview(const std::string& input) const {
    if (_settings.preview.empty() || _settings.inputs.size() == 1) return _settings.preview;
    fs::path preview(_settings.preview);
    const std::string extension = preview.extension().string();
    const std::string stem = input == "-" ? "stdin" : fs::path(input).stem().string();
    preview.replace_filename(preview.stem().string() + "-" + stem + extension);
    return preview.string();
  }

  bool FindSource(Task& task) {
    char start[kProbedBytes];
    if (task.input == "-") {
      std::string reason;
      if (!readStandardInput(task.block, reason)) {
        task.problem = "it cannot be read: " + reason;
        return false;
      }
      const std::string_view bytes(reinterpret_cast<const char*>(task.block.bytes.get()),
                                   task.block.count);
      task.source = findFormatOfContent(bytes.substr(0, kProbedBytes), bytes.size());
      // The reader finds words for what it is not.
      if (task.source == nullptr) task.source = findFormat("stl");
      return true;
    }
    std::string reason;
    const auto file = openInput(task.input, reason);
    if (file == nullptr) {
      task.problem = "it cannot be opened: " + reason;
      return false;
    }
    task.source = findFormatOfFile(task.input);
    if (task.source != nullptr && task.source->isRead) return true;
    const std::size_t count = std::fread(start, 1, sizeof start, file.get());
    std::error_code ignored;
    task.source =
        findFormatOfContent(std::string_view(start, count), fs::file_size(task.input, ignored));
    if (task.source != nullptr) return true;
    task.problem = "neither its name nor its content is that of a format that can be read (" +
                   listReadFormats() + ")";
    return false;
  }

  // Keeps the place for the result; also with --force no result of this run may replace an input
  // or another result.
  bool Claim(const std::string& output, Task& task) {
    if (output == "-") return true;
    std::error_code ignored;
    const std::string place = normalise(output);
    const fs::file_type kind = fs::status(output, ignored).type();
    if (kind == fs::file_type::regular || kind == fs::file_type::not_found) {
      if (const auto input = _inputs.find(place); input != _inputs.end()) {
        task.problem = input->second == task.input
                           ? "its result would take its own place"
                           : "its result " + quoteText(output) +
                                 " would take the place of the input " + quoteText(input->second);
        return false;
      }
      const auto [earlier, isFirst] = _outputs.try_emplace(place, task.name);
      if (!isFirst) {
        task.problem = "its result " + quoteText(output) + " would take the place of that of " +
                       earlier->second;
        return false;
      }
    }
    std::string reason;
    if (canCreateOutput(output, _settings.isForced, reason)) return true;
    task.problem = quoteText(output) + " cannot be written: " + reason;
    return false;
  }

  const Settings& _settings;
  // Places, each with the input that stands there or whose result is to stand there.
  std::map<std::string, std::string> _inputs;
  std::map<std::string, std::string> _outputs;
};

}  // namespace

std::vector<Task> makePlan(const Settings& settings) {
  Planner planner(settings);
  std::vector<Task> tasks;
  tasks.reserve(settings.inputs.size());
  for (const std::string& input : settings.inputs) tasks.push_back(planner.Plan(input));
  return tasks;
}

}  // namespace kova::translate
