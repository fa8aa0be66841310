// The argument scanner against a plain model: any arguments, any names, any order of calls.

#include "kovabase/options/KOVAArgs.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

using Words = std::vector<std::string>;

class Model {
 public:
  explicit Model(const Words& arguments) : _arguments(arguments) {}

  const std::string* nextArgument() {
    if (_current + 1 >= count()) return nullptr;
    _group.clear();
    return &_arguments[static_cast<std::size_t>(++_current)];
  }

  bool shift() {
    const bool hadNext = _current + 1 < count();
    if (_current < count()) {
      ++_current;
      _group.clear();
    }
    return hadNext;
  }

  const std::string* optionArgument() {
    const bool hasNext = _current + 1 < count();
    if (!hasNext || isOption(_arguments[static_cast<std::size_t>(_current + 1)])) return nullptr;
    return nextArgument();
  }

  bool nextOption(const Words& names, int& which) {
    which = -1;
    if (!_group.empty()) {
      which = letter(_group[0], names);
      _group.erase(0, 1);
      return which >= 0;
    }
    for (int i = _current + 1; i < count(); ++i) {
      const std::string& argument = _arguments[static_cast<std::size_t>(i)];
      if (!isOption(argument)) continue;
      const std::string text = argument.substr(1);
      which = word(text, names);
      if (which >= 0) {
        _current = i;
        return true;
      }
      which = letter(text[0], names);
      if (which >= 0) {
        _current = i;
        _group = text.substr(1);
        return true;
      }
    }
    return false;
  }

 private:
  int count() const { return static_cast<int>(_arguments.size()); }
  static bool isOption(const std::string& word) { return word.size() > 1 && word[0] == '-'; }

  static int word(const std::string& text, const Words& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i].substr(0, text.size()) == text) return static_cast<int>(i);
    }
    return -1;
  }

  static int letter(char wanted, const Words& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string& name = names[i];
      if (name == std::string(1, wanted) || name == std::string{wanted, ':'}) {
        return static_cast<int>(i);
      }
    }
    return -1;
  }

  const Words& _arguments;
  int _current = 0;
  std::string _group;  // letters that are still to come
};

Words readWords(const std::uint8_t*& data, std::size_t& size) {
  Words words(1);
  while (size > 0) {
    const char c = static_cast<char>(*data);
    ++data;
    --size;
    if (c == '\n') break;
    if (c == ' ' || c == '\0') {
      words.emplace_back();
    } else {
      words.back() += c;
    }
  }
  return words;
}

std::vector<char*> pointersTo(Words& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  return pointers;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Words names = readWords(data, size);
  Words arguments = readWords(data, size);
  std::vector<char*> namePointers = pointersTo(names);
  std::vector<char*> argumentPointers = pointersTo(arguments);
  KOVAArgs args(static_cast<int>(arguments.size()), argumentPointers.data());
  Model model(arguments);

  for (std::size_t i = 0; i < size; ++i) {
    switch (data[i] % 6) {
      case 0: {
        const char* const argument = args.GetNextArg();
        const std::string* const wanted = model.nextArgument();
        require((argument == nullptr) == (wanted == nullptr));
        if (argument != nullptr) require(argument == wanted->data());
        break;
      }
      case 1: require(args.Shift() == model.shift()); break;
      case 2: {
        char* argument = nullptr;
        const bool isFound = args.GetOptionArgument(&argument);
        const std::string* const wanted = model.optionArgument();
        require(isFound == (wanted != nullptr));
        if (isFound) require(argument == wanted->data());
        break;
      }
      default: {
        int which = -2;
        int wantedWhich = -2;
        const bool isFound =
            args.GetNextOption(static_cast<int>(names.size()), namePointers.data(), &which);
        require(isFound == model.nextOption(names, wantedWhich));
        require(which == wantedWhich);
        break;
      }
    }
  }
  return 0;
}
