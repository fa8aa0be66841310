// Any bytes as a configuration file: the sections, keys, values and the number of errors against a
// plain model of the syntax, and every getter on what was read.

#include "kovabase/options/KOVACfgFile.h"
#include "kovabase/options/KOVAOptions.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

struct Section {
  std::string name;
  std::vector<std::pair<std::string, std::string>> keys;
};

std::string stripped(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1);
}

class Model {
 public:
  explicit Model(const std::string& bytes) {
    select("");
    for (std::size_t at = 0; at < bytes.size();) {
      std::size_t length = bytes.find('\n', at);
      length = (length == std::string::npos ? bytes.size() : length + 1) - at;
      if (length > 1023) length = 1023;
      std::string line = bytes.substr(at, length);
      line = line.substr(0, line.find('\0'));
      if (at == 0 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        isUTF8 = true;
        line.erase(0, 3);
      }
      take(stripped(line));
      at += length;
    }
  }

  std::vector<Section> sections;
  int errors = 0;
  bool isUTF8 = false;

 private:
  void select(const std::string& name) {
    for (_current = 0; _current < sections.size(); ++_current) {
      if (sections[_current].name == name) return;
    }
    sections.push_back(Section{name, {}});
  }

  void take(const std::string& line) {
    if (line.empty() || line[0] == '#' || line[0] == ';') return;
    if (line[0] == '[') {
      const std::size_t close = line.rfind(']');
      if (close == std::string::npos) {
        ++errors;
      } else {
        select(stripped(line.substr(1, close - 1)));
      }
      return;
    }
    std::size_t separator = line.find('=');
    if (separator == std::string::npos) separator = line.find(':');
    const bool isCut = separator != std::string::npos;
    const std::string key = isCut ? stripped(line.substr(0, separator)) : "";
    const std::string value = isCut ? stripped(line.substr(separator + 1)) : "";
    if (key.empty() || value.empty()) {
      ++errors;
    } else {
      sections[_current].keys.emplace_back(key, value);
    }
  }

  std::size_t _current = 0;
};

void compareKey(const KOVACfgFileKey& key, const std::pair<std::string, std::string>& wanted,
                const char* codepage) {
  const auto textOf = [&](const std::string& text) {
    return KOVAString::fromBytes(text.data(), static_cast<int>(text.size()), codepage);
  };
  require(key.GetName() == textOf(wanted.first));
  int count = 0;
  for (std::size_t at = 0; at <= wanted.second.size(); ++count) {
    std::size_t comma = wanted.second.find(',', at);
    if (comma == std::string::npos) comma = wanted.second.size();
    require(key.GetValue(count) == textOf(wanted.second.substr(at, comma - at)));
    at = comma + 1;
  }
  require(key.GetNumValues() == count);
  require(key.GetValue(count).isEmpty() && key.GetValue(-1).isEmpty());
}

// A getter either answers or collects one message.
void readTyped(KOVACfgFile& file, const char* key, int index, const char* section) {
  int errors = file.GetErrorCount();
  const auto settle = [&](bool isRead) {
    errors += isRead || !file.ExistKey(key, section) ? 0 : 1;
    require(file.GetErrorCount() == errors);
    require(errors == 0 || file.GetErrorMessage(errors - 1) != nullptr);
  };
  int integer = -7;
  double real = 0;
  bool flag = false;
  settle(file.GetInt(key, integer, index, section));
  settle(file.GetDouble(key, real, index, section));
  settle(file.GetBool(key, flag, index, section));
  int logical = -7;
  settle(file.GetLogical(key, logical, index, section));
  require(logical == -7 || logical == 0 || logical == 1);
  KOVAString text;
  require(file.GetString(key, text, index, section) == file.ExistKey(key, section));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const Model model(bytes);
  std::string copy = bytes;
  FILE* const stream = fmemopen(copy.data(), copy.size(), "rb");
  if (stream == nullptr) return 0;

  KOVACfgFile file;
  const bool isLoaded = file.Load(stream).IsSuccess();
  require(file.GetErrorCount() == model.errors);
  require(isLoaded == (model.errors == 0));
  for (const Section& wanted : model.sections) {
    const KOVACfgFileSection* const section = file.findSection(wanted.name.c_str());
    require(section != nullptr);
    require(section->GetNumKeys() == static_cast<int>(wanted.keys.size()));
    for (int i = 0; i < section->GetNumKeys(); ++i) {
      const auto& key = wanted.keys[static_cast<std::size_t>(i)];
      compareKey(*section->GetKey(i), key, model.isUTF8 ? "UTF-8" : nullptr);
      if (i >= 64) continue;
      const int values = file.GetArraySize(key.first.c_str(), wanted.name.c_str());
      for (int index = -1; index <= values && index < 8; ++index) {
        readTyped(file, key.first.c_str(), index, wanted.name.c_str());
      }
    }
  }

  // Options come from the unnamed section, and only from a file without errors.
  std::rewind(stream);
  KOVAOptions options;
  require(options.ReadFromFile(stream).IsSuccess() == (model.errors == 0));
  require(model.errors == 0 || options.GetCount() == 0);
  require(options.GetCount() <= static_cast<int>(model.sections[0].keys.size()));
  std::fclose(stream);
  return 0;
}
