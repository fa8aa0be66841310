#include "kovabase/options/KOVAArgs.h"

#include <cstring>

namespace {

bool startsLikeOption(const char* argument) {
  return argument != nullptr && argument[0] == '-' && argument[1] != '\0';
}

}  // namespace

KOVAArgs::KOVAArgs(int argc, char** argv)
    : _last(argv != nullptr && argc > 0 ? argc - 1 : -1), _arguments(argv) {
  for (int i = _last; i > 0 && _lastOption == 0; --i) {
    if (startsLikeOption(_arguments[i])) _lastOption = i;
  }
}

char* KOVAArgs::GetNextArg() {
  if (_current >= _last) return nullptr;
  _inCluster = false;
  return _arguments[++_current];
}

bool KOVAArgs::Shift() {
  const bool hadNext = _current < _last;
  if (_current <= _last) {
    ++_current;
    _inCluster = false;
  }
  return hadNext;
}

bool KOVAArgs::GetOptionArgument(char** argument) {
  if (argument == nullptr || _current >= _last || startsLikeOption(_arguments[_current + 1])) {
    return false;
  }
  _inCluster = false;
  *argument = _arguments[++_current];
  return true;
}

bool KOVAArgs::GetNextOption(int count, char** names, int* which) {
  int ignored = -1;
  int& found = which != nullptr ? *which : ignored;
  found = -1;

  if (_inCluster) {
    ++_letterPosition;
    _currentLetter = _arguments[_current][_letterPosition];
    if (_currentLetter != '\0') return IsLetterAnOption(_currentLetter, count, names, found);
    _inCluster = false;
  }

  if (!AreThereOneMoreOptions()) return false;
  for (int i = _current + 1; i <= _lastOption; ++i) {
    if (IsAnOption(_arguments[i], count, names, found)) {
      _current = i;
      return true;
    }
  }
  return false;
}

bool KOVAArgs::IsAnOption(const char* argument, int count, char** names, int& which) {
  which = -1;
  if (!startsLikeOption(argument)) return false;

  // Any abbreviation of a name will do, and the first name in the list wins.
  const char* const text = argument + 1;
  const std::size_t length = std::strlen(text);
  for (int i = 0; names != nullptr && i < count; ++i) {
    if (names[i] != nullptr && std::strncmp(text, names[i], length) == 0) {
      which = i;
      return true;
    }
  }

  if (!IsLetterAnOption(text[0], count, names, which)) return false;
  _inCluster = true;
  _currentLetter = text[0];
  _letterPosition = 1;
  return true;
}

bool KOVAArgs::IsLetterAnOption(char letter, int count, char** names, int& which) const {
  which = -1;
  for (int i = 0; names != nullptr && i < count; ++i) {
    const char* const name = names[i];
    if (name == nullptr || name[0] == '\0' || name[0] != letter) continue;
    if (name[1] == '\0' || (name[1] == ':' && name[2] == '\0')) {
      which = i;
      return true;
    }
  }
  return false;
}
