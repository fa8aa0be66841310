#include "kovabase/files/KOVAFilePath.h"

#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/platform/FileSystem.h"
#include "kovabase/platform/NativePath.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

using kova::platform::NativePath;

namespace {

constexpr unsigned short kSeparator = '\\';
constexpr unsigned short kForeignSeparator = '/';
constexpr unsigned short kExtensionMark = '.';
constexpr unsigned short kNoJoint = 0;
constexpr unsigned short kReplacement = '_';
constexpr int kLongPathThreshold = 255;
constexpr int kMostModeCharacters = 15;
constexpr unsigned short kLongPathPrefix[] = {'\\', '\\', '?', '\\', 'U', 'N', 'C', '\\'};
constexpr int kLocalPrefixUnits = 4;
constexpr int kServerPrefixUnits = 8;

struct Units {
  const unsigned short* first;
  int count;

  const unsigned short* end() const { return first + count; }
};

Units unitsOf(const KOVAString& text) { return {text.getUnits(), text.length()}; }

/// The last backslash among the first `count` units, or -1.
int lastSeparatorIn(const unsigned short* units, int count) {
  // Four units in one word: names are long, and have none.
  constexpr std::uint64_t kLowBits = 0x7FFF7FFF7FFF7FFF;
  constexpr std::uint64_t kSeparators = 0x0001000100010001 * kSeparator;
  constexpr int kUnitsOfWord = 4;
  for (; count >= kUnitsOfWord; count -= kUnitsOfWord) {
    std::uint64_t word = 0;
    std::memcpy(&word, units + count - kUnitsOfWord, sizeof word);
    word ^= kSeparators;
    // The top bit of each unit that is zero now, and no other bit.
    const std::uint64_t found = ~(((word & kLowBits) + kLowBits) | word | kLowBits);
    if (found != 0) {
      constexpr bool isLastOnTop = std::endian::native == std::endian::little;
      return count - 1 - (isLastOnTop ? std::countl_zero(found) : std::countr_zero(found)) / 16;
    }
  }
  while (count > 0 && units[count - 1] != kSeparator) --count;
  return count - 1;
}

bool endsWithSeparator(Units text) {
  return text.count > 0 && text.first[text.count - 1] == kSeparator;
}

bool isInvalidInName(unsigned short unit) {
  switch (unit) {
    case '\\':
    case '/':
    case '|':
    case '"':
    case ':':
    case '*':
    case '?':
    case '<':
    case '>': return true;
    default: return false;
  }
}

void copyWithSeparators(Units from, unsigned short* to) {
  for (int i = 0; i < from.count; ++i) {
    to[i] = from.first[i] == kForeignSeparator ? kSeparator : from.first[i];
  }
}

void replaceInvalidCharacters(unsigned short* units, int count) {
  std::replace_if(units + lastSeparatorIn(units, count) + 1, units + count, isInvalidInName,
                  kReplacement);
}

// Puts the prefix of a long path in front of it, in the kServerPrefixUnits units before `units`.
unsigned short* addPrefix(unsigned short* units) {
  const auto startsWithPrefix = [](const unsigned short* at, int prefixUnits) {
    return std::equal(kLongPathPrefix, kLongPathPrefix + prefixUnits, at);
  };
  constexpr int kServerMark = 2;
  const bool isPrefixed = startsWithPrefix(units, kLocalPrefixUnits);
  if (isPrefixed) units += kLocalPrefixUnits;
  if (startsWithPrefix(units, kServerMark)) {
    units += kServerMark - kServerPrefixUnits;
    std::copy_n(kLongPathPrefix, kServerPrefixUnits, units);
  } else {
    units -= kLocalPrefixUnits;
    std::copy_n(kLongPathPrefix, kLocalPrefixUnits, units);
  }
  return units;
}

KOVAString normaliseIn(unsigned short* buffer, Units left, unsigned short joint, Units right,
                       bool replaceInvalid) {
  unsigned short* units = buffer + kServerPrefixUnits;
  unsigned short* end = units;
  copyWithSeparators(left, end);
  end += left.count;
  if (joint != kNoJoint) *end++ = joint;
  copyWithSeparators(right, end);
  end += right.count;
  if (end - units > kLongPathThreshold) units = addPrefix(units);
  const int count = static_cast<int>(end - units);
  if (replaceInvalid) replaceInvalidCharacters(units, count);
  return KOVAString::fromUnits(units, count);
}

// The normalised form of `left`, the joint unless it is kNoJoint, and `right`.
KOVAString normalise(Units left, unsigned short joint, Units right, bool replaceInvalid) {
  const long long count = static_cast<long long>(left.count) + (joint != kNoJoint) + right.count;
  if (count <= kLongPathThreshold) {
    unsigned short buffer[kServerPrefixUnits + kLongPathThreshold];
    return normaliseIn(buffer, left, joint, right, replaceInvalid);
  }
  if (count > std::numeric_limits<int>::max() - kServerPrefixUnits) throw KOVAAllocException();
  const std::unique_ptr<unsigned short[]> buffer(
      new (std::nothrow) unsigned short[static_cast<std::size_t>(count) + kServerPrefixUnits]);
  if (buffer == nullptr) throw KOVAAllocException();
  return normaliseIn(buffer.get(), left, joint, right, replaceInvalid);
}

KOVAString normalise(Units text, bool replaceInvalid) {
  return normalise(text, kNoJoint, {nullptr, 0}, replaceInvalid);
}

unsigned short jointAfter(Units directory) {
  return endsWithSeparator(directory) ? kNoJoint : kSeparator;
}

/// Walks the parts between backslashes; an empty text has none.
class Parts {
 public:
  explicit Parts(Units text) : _at(text.first), _end(text.end()), _isDone(text.count == 0) {}

  bool next(Units& part) {
    if (_isDone) return false;
    const unsigned short* const end = std::find(_at, _end, kSeparator);
    part = {_at, static_cast<int>(end - _at)};
    _isDone = end == _end;
    _at = _isDone ? end : end + 1;
    return true;
  }

 private:
  const unsigned short* _at;
  const unsigned short* _end;
  bool _isDone;
};

bool equalsIgnoringCase(Units a, Units b) {
  if (std::equal(a.first, a.end(), b.first, b.end())) return true;
  return KOVAString::fromUnits(a.first, a.count)
      .equalsIgnoreCase(KOVAString::fromUnits(b.first, b.count));
}

bool isSkippedWhenResolving(Units part) {
  return (part.count == 1 && part.first[0] == kExtensionMark) ||
         std::find(part.first, part.end(), ':') != part.end();
}

bool query(const KOVAString& path, kova::platform::FileStatus& status) {
  const NativePath native(path.getUnits(), path.length());
  return native.isValid() && kova::platform::queryFile(native.text(), status);
}

}  // namespace

KOVAFilePath::KOVAFilePath(const KOVAString& path, bool replaceInvalid)
    : _path(normalise(unitsOf(path), replaceInvalid)) {}

KOVAFilePath::KOVAFilePath(const char* path, bool replaceInvalid)
    : KOVAFilePath(KOVAString(path), replaceInvalid) {}

KOVAFilePath::KOVAFilePath(const KOVAString& directory, const KOVAString& name, bool replaceInvalid)
    : _path(normalise(unitsOf(directory), jointAfter(unitsOf(directory)), unitsOf(name),
                      replaceInvalid)) {}

KOVAFilePath::~KOVAFilePath() = default;

void KOVAFilePath::Initialize() {}

void KOVAFilePath::FixSeparator(KOVAString& text) const {
  text = text.replace(kForeignSeparator, kSeparator);
}

void KOVAFilePath::InitializeFromPathString(const KOVAString& path, bool replaceInvalid) {
  KOVAString text(path);
  FixSeparator(text);
  _path = normalise(unitsOf(text), replaceInvalid);
}

KOVAString KOVAFilePath::GetPath() const { return _path; }

KOVAString KOVAFilePath::GetName() const { return _path.substring(GetNameIndex()); }

KOVAString KOVAFilePath::GetNameWithoutExtension() const {
  const int extension = GetFirstExtensionIndex();
  return _path.substring(GetNameIndex(), extension < 0 ? _path.length() : extension);
}

KOVAString KOVAFilePath::GetNameWithoutLastExtension() const {
  const int extension = GetLastExtensionIndex();
  return _path.substring(GetNameIndex(), extension < 0 ? _path.length() : extension);
}

KOVAString KOVAFilePath::GetLastExtension() const {
  const int extension = GetLastExtensionIndex();
  return extension < 0 ? KOVAString() : _path.substring(extension + 1);
}

KOVAString KOVAFilePath::GetDirectory() const {
  return _path.substring(0, GetLastSeparatorIndex());
}

bool KOVAFilePath::IsValid() const { return _path.length() > 0; }

bool KOVAFilePath::IsAbsolute() const {
  const auto isSeparator = [](unsigned short unit) {
    return unit == kSeparator || unit == kForeignSeparator;
  };
  if (!IsValid()) return false;
  return isSeparator(_path.charAt(0)) || (_path.charAt(1) == ':' && isSeparator(_path.charAt(2)));
}

bool KOVAFilePath::HasLastExtensionIgnoringCase(const KOVAString& extension) const {
  const KOVAString own = GetLastExtension();
  return extension.charAt(0) == kExtensionMark ? own.equalsIgnoreCase(extension.substring(1))
                                               : own.equalsIgnoreCase(extension);
}

void KOVAFilePath::AddExtension(const KOVAString& extension) {
  // Room for both at once: the path is as it was when there is none.
  const long long count = static_cast<long long>(_path.length()) + 1 + extension.length();
  if (count > std::numeric_limits<int>::max()) throw KOVAAllocException();
  _path.reserve(static_cast<int>(count));
  _path.append(kExtensionMark);
  _path.append(extension);
}

KOVAFilePath KOVAFilePath::ReplaceLastExtension(const KOVAString& extension) const {
  const int index = GetLastExtensionIndex();
  const unsigned short joint = extension.charAt(0) == kExtensionMark ? kNoJoint : kExtensionMark;
  KOVAFilePath result;
  result._path = normalise({_path.getUnits(), index < 0 ? _path.length() : index}, joint,
                           unitsOf(extension), false);
  return result;
}

KOVAFilePath KOVAFilePath::ReplaceFirstExtension(const KOVAString& extension) const {
  // No dot is added here, unlike above: callers bring their own.
  const int index = GetFirstExtensionIndex();
  KOVAFilePath result;
  result._path = normalise({_path.getUnits(), index < 0 ? _path.length() : index}, kNoJoint,
                           unitsOf(extension), false);
  return result;
}

KOVAFilePath KOVAFilePath::operator+(const KOVAString& text) const {
  const Units path = unitsOf(_path);
  const bool isExtension = text.charAt(0) == kExtensionMark;
  KOVAFilePath result;
  result._path = normalise(path, isExtension ? kNoJoint : jointAfter(path), unitsOf(text), false);
  return result;
}

KOVAFilePath KOVAFilePath::FindCommonPath(const KOVAFilePath& other) const {
  const Units path = unitsOf(_path);
  KOVAFilePath result;
  if (GetNameIndex() == path.count) return result;
  Parts parts(path);
  Parts otherParts({other._path.getUnits(), std::max(other.GetLastSeparatorIndex(), 0)});
  int common = -1;
  for (Units part{}, otherPart{}; otherParts.next(otherPart) && parts.next(part);) {
    if (!equalsIgnoringCase(part, otherPart)) break;
    common = static_cast<int>(part.end() - path.first);
  }
  if (common >= 0) result._path = normalise({path.first, common}, kSeparator, {nullptr, 0}, false);
  return result;
}

KOVAFilePath KOVAFilePath::ResolveAgainst(const KOVAFilePath& base, bool isDirectory) const {
  const KOVAString name = GetName();
  if (name.isEmpty()) return KOVAFilePath();
  if (IsAbsolute() && DoesFileExist()) return KOVAFilePath(*this);

  Units path = unitsOf(_path);
  bool skipsFirst = false;
  if (path.first[0] == kSeparator) {
    path = {path.first + 1, path.count - 1};
    if (path.count > 0 && path.first[0] == kSeparator) {
      path = {path.first + 1, path.count - 1};
      skipsFirst = true;
    }
  }

  const KOVAString directory = base.GetDirectory();
  const unsigned short joint = directory.isEmpty() ? kNoJoint : jointAfter(unitsOf(directory));
  const auto candidateWith = [&](const KOVAString& tail) {
    KOVAFilePath candidate;
    candidate._path = normalise(unitsOf(directory), joint, unitsOf(tail), false);
    return candidate;
  };

  KOVAString tail;
  for (int end = path.count; end >= 0;) {
    const int separator = lastSeparatorIn(path.first, end);
    if (separator < 0 && skipsFirst) break;
    const Units part{path.first + separator + 1, end - separator - 1};
    end = separator;
    if (isSkippedWhenResolving(part)) continue;
    // Nothing of this length exists, nor anything longer.
    const long long count = static_cast<long long>(directory.length()) + part.count + tail.length();
    if (count > NativePath::kMostUnits) break;
    KOVAString longer = KOVAString::fromUnits(part.first, part.count);
    if (!tail.isEmpty()) {
      longer.append(kSeparator);
      longer.append(tail);
    }
    tail = std::move(longer);
    KOVAFilePath candidate = candidateWith(tail);
    if (isDirectory ? candidate.DoesDirectoryExist() : candidate.DoesFileExist()) return candidate;
  }
  return candidateWith(name);
}

bool KOVAFilePath::DoesFileExist() const {
  const NativePath native(_path.getUnits(), _path.length());
  return native.isValid() && kova::platform::canOpenFile(native.text());
}

bool KOVAFilePath::DoesDirectoryExist() const {
  const NativePath native(_path.getUnits(), _path.length());
  return native.isValid() && kova::platform::doesExist(native.text());
}

std::FILE* KOVAFilePath::OpenFile(const char* mode) const {
  if (mode == nullptr || std::strlen(mode) > kMostModeCharacters) return nullptr;
  const NativePath native(_path.getUnits(), _path.length());
  return native.isValid() ? kova::platform::openStream(native.text(), mode) : nullptr;
}

KOVAResult KOVAFilePath::RenameFile(const KOVAFilePath& newPath) const {
  if (!IsValid() || !newPath.IsValid()) return KOVAResultCode::kInvalidArgument;
  const NativePath native(_path.getUnits(), _path.length());
  const NativePath newNative(newPath._path.getUnits(), newPath._path.length());
  const bool isDone = native.isValid() && newNative.isValid() &&
                      kova::platform::renameWithoutReplacing(native.text(), newNative.text());
  return isDone ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

bool KOVAFilePath::RemoveFile() const {
  const NativePath native(_path.getUnits(), _path.length());
  return native.isValid() && kova::platform::removeFile(native.text());
}

KOVAResult KOVAFilePath::MakeDirectory() const {
  if (!IsValid()) return KOVAResultCode::kInvalidArgument;
  const NativePath native(_path.getUnits(), _path.length());
  const bool isDone = native.isValid() && kova::platform::makeDirectory(native.text());
  return isDone ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

KOVAResult KOVAFilePath::RemoveEmptyDirectory() const {
  if (!IsValid()) return KOVAResultCode::kInvalidArgument;
  const NativePath native(_path.getUnits(), _path.length());
  const bool isDone = native.isValid() && kova::platform::removeEmptyDirectory(native.text());
  return isDone ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

KOVAResult KOVAFilePath::RemoveNonEmptyDirectory() const {
  if (!IsValid()) return KOVAResultCode::kInvalidArgument;
  const NativePath native(_path.getUnits(), _path.length());
  if (!native.isValid()) return KOVAResultCode::kFailure;
  try {
    kova::platform::removeTree(native.text());
  } catch (const std::bad_alloc&) {
    throw KOVAAllocException();
  }
  // What could not be removed is not reported; callers look whether the directory is still there.
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFilePath::GetFileStats(struct stat64& status) const {
  kova::platform::FileStatus found = {};
  const bool isFound = query(_path, found);
  kova::platform::enterStatus(isFound ? &found : nullptr, status);
  return isFound ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

KOVAResult KOVAFilePath::GetFileSize(unsigned int& bytes) const {
  kova::platform::FileStatus status = {};
  if (!query(_path, status)) return KOVAResultCode::kFailure;
  bytes = static_cast<unsigned int>(status.bytes & 0xFFFFFFFFU);
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFilePath::GetCreationDate(std::int64_t& seconds) const {
  kova::platform::FileStatus status = {};
  if (!query(_path, status)) return KOVAResultCode::kFailure;
  seconds = status.created;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFilePath::GetLastAccessDate(std::int64_t& seconds) const {
  kova::platform::FileStatus status = {};
  if (!query(_path, status)) return KOVAResultCode::kFailure;
  seconds = status.accessed;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFilePath::GetLastModificationDate(std::int64_t& seconds) const {
  kova::platform::FileStatus status = {};
  if (!query(_path, status)) return KOVAResultCode::kFailure;
  seconds = status.modified;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFilePath::GetShortFileNamePath(KOVAFilePath& /*shortPath*/) const {
  if (!DoesFileExist()) return KOVAResultCode::kFailure;
  KOVAWarning::Printf("Input file-path seems to have unsupported characters. ");
  bool isWanted = true;
  if (KOVAEnvironment::GetVariable("KOVA_WIN_SHORT_NAME", isWanted).IsSuccess() && !isWanted) {
    KOVAErrorEvent::Fire("No work-around is implemented to open file with such file-path.\n");
    return KOVAResultCode::kNotImplemented;
  }
  // File systems with short names belong to another system.
  KOVAErrorEvent::Fire(
      "Using windows 8dot3 short file-name to open the file failed. Creation of windows 8dot3 "
      "short-name might have been disabled on the location when the file was created.\n");
  return KOVAResultCode::kFailure;
}

KOVAFilePath KOVAFilePath::GetCurrentWorkingDirectory() {
  KOVAFilePath result;
  try {
    std::string native;
    if (!kova::platform::currentDirectory(native)) return result;
    const std::vector<unsigned short> stored =
        kova::platform::storedForm(native.data(), native.size());
    if (stored.size() > NativePath::kMostUnits) return result;
    result._path = normalise({stored.data(), static_cast<int>(stored.size())}, false);
  } catch (const std::bad_alloc&) {
    throw KOVAAllocException();
  }
  return result;
}

KOVAResult KOVAFilePath::GetMBCSBuffer(char* buffer, int size) const {
  if (_path.getConvertToMBCSSize(nullptr) > size) return KOVAResultCode::kFailure;
  return _path.convertToMBCS(buffer, size, nullptr, true, static_cast<char>(kReplacement));
}

KOVAResult KOVAFilePath::GetWideCharacterBuffer(unsigned short* buffer, int size) const {
  return _path.convertToWideCharacter(buffer, size);
}

int KOVAFilePath::GetLastSeparatorIndex() const noexcept {
  return lastSeparatorIn(_path.getUnits(), _path.length());
}

int KOVAFilePath::GetFirstExtensionIndex() const noexcept {
  const unsigned short* const units = _path.getUnits();
  const unsigned short* const end = units + _path.length();
  const unsigned short* const mark = std::find(units + GetNameIndex(), end, kExtensionMark);
  return mark == end ? -1 : static_cast<int>(mark - units);
}

int KOVAFilePath::GetLastExtensionIndex() const noexcept {
  // One walk back from the end: the name is over at the first separator.
  const unsigned short* const units = _path.getUnits();
  for (int i = _path.length() - 1; i >= 0 && units[i] != kSeparator; --i) {
    if (units[i] == kExtensionMark) return i;
  }
  return -1;
}
