#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

/// The text type of the library: a deep-copied string of UTF-16 code units.
///
/// Lengths, indexes and positions count code units; a character is one unsigned 16-bit unit. A text
/// may hold U+0000 and lone surrogates. Short texts (up to 24 units) are stored inside the object
/// and cost no allocation.
///
/// Nothing throws but KOVAAllocException when memory is exhausted, and then the object is as it
/// was. Arguments that make no sense give the empty string, -1 or false, as each function says.
///
/// One object belongs to one thread at a time; distinct strings may be used on distinct threads at
/// once, whatever code pages they convert from and to. There is no pointer into the object itself,
/// so a string survives a move of its bytes and may be an array element.
class KOVABASE_API KOVAString {
 public:
  /// The empty string.
  KOVAString() noexcept = default;
  /// A deep copy, the bad-conversion flag included.
  KOVAString(const KOVAString& other);
  /// Takes the text over; `other` is the empty string afterwards.
  KOVAString(KOVAString&& other) noexcept { takeOver(other); }

  /// The one code unit, also when it is zero or half of a surrogate pair.
  explicit KOVAString(unsigned short unit);
  /// The one code point (one unit, or a surrogate pair). What is none (a surrogate, a negative
  /// value or one above 0x10FFFF) becomes U+FFFD and sets the bad-conversion flag.
  explicit KOVAString(int codePoint);

  /// Zero-terminated UTF-16; a null pointer is the empty string.
  explicit KOVAString(const unsigned short* text);
  explicit KOVAString(const char16_t* text);
  /// Zero-terminated UTF-32; a null pointer is the empty string. Each value that is no code point
  /// becomes U+FFFD and sets the bad-conversion flag.
  explicit KOVAString(const int* text);

  /// Zero-terminated text in a code page; a null pointer is the empty string.
  /// @param codepage  any name or alias that ICU knows, of at most 60 characters; null or empty is
  ///   the default code page. An unknown name sets the bad-conversion flag, and the text is read in
  ///   the default code page.
  /// Malformed bytes become U+FFFD and do not set the flag. UTF-8, US-ASCII and ISO-8859-1 need no
  /// converter and are the fastest.
  KOVAString(const char* text, const char* codepage = nullptr);

  virtual ~KOVAString() { releaseBlock(); }

  KOVAString& operator=(const KOVAString& other);
  KOVAString& operator=(KOVAString&& other) noexcept;

  /// `count` units, which need no terminator and may hold U+0000. Empty when `units` is null or
  /// count < 1.
  static KOVAString fromUnits(const unsigned short* units, int count);
  /// `count` bytes of text in a code page, read as by the constructor from narrow text but without
  /// a terminator; zero bytes are part of the text. Empty when `bytes` is null or count < 1.
  static KOVAString fromBytes(const char* bytes, int count, const char* codepage = nullptr);

  /// The name of the default code page, as ICU reports it for the process's locale. It is asked for
  /// once, when text outside ASCII (or its name) first needs it.
  static KOVAString getDefaultCodepage();

  int length() const noexcept { return _length; }
  bool isEmpty() const noexcept { return _length == 0; }
  /// The unit at `index`; 0xFFFF outside 0 .. length() - 1.
  unsigned short charAt(int index) const noexcept {
    return index >= 0 && index < _length ? getUnits()[index] : static_cast<unsigned short>(0xFFFF);
  }
  /// The length() units and a terminating zero, never null. Valid until this string is next
  /// changed, moved or destroyed.
  const unsigned short* getUnits() const noexcept { return _onHeap ? block() : _inside; }
  /// A hash of all units, the same in every process on one kind of machine; at most 0x80000000.
  unsigned hashCode() const noexcept;
  /// Whether this text was built from narrow text in an unknown code page or from UTF-32 that held
  /// values which are no code points. Copies keep the flag; new texts made of this one do not.
  bool getBadConversion() const noexcept { return _badConversion; }

  /// Three-way comparison (-1, 0 or 1) in the order of code points, which differs from that of code
  /// units: U+FFFF comes before U+10000. The operators agree with it.
  int compareTo(const KOVAString& other) const noexcept;
  bool equals(const KOVAString& other) const noexcept;
  /// The same after full Unicode case folding of both texts, independent of any locale: "ß" equals
  /// "SS". The order is that of the folded code points.
  int compareToIgnoreCase(const KOVAString& other) const noexcept;
  bool equalsIgnoreCase(const KOVAString& other) const noexcept;

  friend bool operator==(const KOVAString& a, const KOVAString& b) noexcept { return a.equals(b); }
  friend bool operator!=(const KOVAString& a, const KOVAString& b) noexcept { return !a.equals(b); }
  friend bool operator<(const KOVAString& a, const KOVAString& b) noexcept {
    return a.compareTo(b) < 0;
  }
  friend bool operator<=(const KOVAString& a, const KOVAString& b) noexcept {
    return a.compareTo(b) < 1;
  }
  friend bool operator>(const KOVAString& a, const KOVAString& b) noexcept {
    return a.compareTo(b) > 0;
  }
  friend bool operator>=(const KOVAString& a, const KOVAString& b) noexcept {
    return a.compareTo(b) >= 0;
  }

  friend KOVAString operator+(const KOVAString& left, const KOVAString& right) {
    return concatenate(left, right);
  }
  /// Reuses the memory of a temporary on the left, so that a chain of `+` grows one text.
  friend KOVAString operator+(KOVAString&& left, const KOVAString& right) {
    return concatenate(static_cast<KOVAString&&>(left), right);
  }
  /// Appends and returns a copy of the result. A copy that is not used is mostly optimised away;
  /// append() makes none.
  KOVAString operator+=(const KOVAString& text) {
    append(text);
    return *this;
  }

  /// Appends in place; the text may be this string itself. The bad-conversion flag stays as it is.
  void append(const KOVAString& text);
  void append(unsigned short unit);
  /// Appends `count` units, which may lie in this string itself; nothing when `units` is null or
  /// count < 1.
  void append(const unsigned short* units, int count);
  /// Makes room for `units` units in all, so that appending up to there neither allocates nor
  /// fails.
  void reserve(int units);
  /// Makes this the empty string without the flag; memory is kept for reuse.
  void clear() noexcept;

  /// The units from `start` up to, not including, `end`; both are pinned to 0 .. length().
  KOVAString substring(int start, int end) const;
  KOVAString substring(int start) const;
  /// A copy in which every occurrence of one unit is replaced by another. Half of a surrogate pair
  /// is not an occurrence.
  KOVAString replace(unsigned short oldUnit, unsigned short newUnit) const;

  /// The first position at or after `from` where the text or unit occurs; -1 when there is none.
  /// Negative `from` is 0. Surrogate pairs in that range are not torn: half of one does not match.
  /// An empty text is found at length() when from < length(), otherwise not at all; kept so.
  int indexOf(const KOVAString& text, int from = 0) const noexcept;
  int indexOf(unsigned short unit, int from = 0) const noexcept;
  /// The last position at or after `from` (which begins the searched range here too); -1 when there
  /// is none. An empty text is found at length() when from <= length().
  int lastIndexOf(const KOVAString& text, int from = 0) const noexcept;
  int lastIndexOf(unsigned short unit, int from = 0) const noexcept;
  /// False for an empty text, also on the empty string.
  bool startsWith(const KOVAString& text) const noexcept;
  bool endsWith(const KOVAString& text) const noexcept;

  /// The conversions below write zero-terminated text.
  /// @param size  units of `buf` (bytes, 16-bit or 32-bit values), terminator included.
  /// @return Success; InvalidArgument, `buf` untouched, when it is null or size < 1; Failure,
  ///   buf[0] = 0, when the text does not fit.
  /// Lone surrogates become U+FFFD in UTF-8 and UTF-32; UTF-16 and wide characters (16 bits on
  /// every system) are the units as they are.
  KOVAResult convertToUTF8(char* buf, int size) const noexcept;
  KOVAResult convertToUTF16(unsigned short* buf, int size) const noexcept;
  KOVAResult convertToUTF32(int* buf, int size) const noexcept;
  KOVAResult convertToWideCharacter(unsigned short* buf, int size) const noexcept;
  /// @param codepage  as in the constructor; an unknown name stands for the default code page.
  /// @param substitute  stands for characters that the code page lacks, when `useSubstitute` is
  /// true
  ///   and it is not 0; else the code page's own does (byte 26 in US-ASCII). Characters that are
  ///   invisible by default, such as U+200B, are left out where the code page lacks them.
  /// @return as above; UnexpectedError, buf[0] = 0, when no converter can be had.
  KOVAResult convertToMBCS(char* buf, int size, const char* codepage, bool useSubstitute,
                           char substitute) const noexcept;
  /// An identifier-safe ASCII text: '_' stands for all but 0-9, 11-32, 34, 37-63, 65-90, 95, 97-122
  /// and 127, and for byte 26. Ends at the first U+0000.
  /// @return as above, but Failure, buf[0] = 0, when size < 0.
  KOVAResult convertToRestrictedASCII(char* buf, int size) const noexcept;

  /// The size of buffer that each conversion needs, terminator included, with the code page's own
  /// substitute; the UTF-16 count alone lacks the terminator, and is kept so. A count that no int
  /// holds is INT_MAX. The last two are 0 when no converter can be had.
  int getConvertToUTF8Size() const noexcept;
  int getConvertToUTF16Size() const noexcept;
  int getConvertToUTF32Size() const noexcept;
  int getConvertToWideCharacterSize() const noexcept;
  int getConvertToMBCSSize(const char* codepage) const noexcept;
  int getConvertToRestrictedASCIISize() const noexcept;

 private:
  static constexpr int kInsideUnits = 24;

  [[noreturn]] static void throwExhausted();
  static KOVAString concatenate(const KOVAString& left, const KOVAString& right);
  static KOVAString concatenate(KOVAString&& left, const KOVAString& right);

  // Of a long text, _inside holds the pointer to its block and the block's capacity in units, which
  // is more than kInsideUnits and leaves out the terminator.
  unsigned short* block() const noexcept {
    unsigned short* block;
    std::memcpy(&block, _inside, sizeof block);
    return block;
  }
  int blockCapacity() const noexcept {
    int capacity;
    std::memcpy(&capacity, _inside + sizeof(void*) / sizeof *_inside, sizeof capacity);
    return capacity;
  }
  void setBlock(unsigned short* block, int capacity) noexcept {
    std::memcpy(_inside, &block, sizeof block);
    std::memcpy(_inside + sizeof(void*) / sizeof *_inside, &capacity, sizeof capacity);
    _onHeap = true;
  }
  unsigned short* units() noexcept { return _onHeap ? block() : _inside; }
  int capacity() const noexcept { return _onHeap ? blockCapacity() : kInsideUnits; }
  void releaseBlock() noexcept {
    if (_onHeap) std::free(block());
  }
  void takeOver(KOVAString& other) noexcept;
  unsigned short* allocate(long long unitCount);
  void grow(long long unitCount);
  void growFor(long long unitCount);
  void shrink() noexcept;
  void setLength(int unitCount) noexcept;
  void assignUnits(const unsigned short* source, long long count);
  void assignBytes(const char* bytes, long long count, const char* codepage);
  void readBytes(const char* bytes, std::size_t count, std::size_t done, const char* codepage);
  void assignUTF32(const int* values, long long count);

  // So much that the object fills a cache line.
  alignas(void*) unsigned short _inside[kInsideUnits + 1] = {};
  bool _onHeap = false;
  bool _badConversion = false;
  int _length = 0;
};

// In sight of the compiler, malloc and free included, so that it can leave out unused copies.
inline KOVAString::KOVAString(const KOVAString& other)
    : _badConversion(other._badConversion), _length(other._length) {
  if (_length <= kInsideUnits) {
    // All of the inside text: a copy of fixed size is a few instructions.
    std::memcpy(_inside, other.getUnits(), sizeof _inside);
  } else {
    const std::size_t bytes = (static_cast<std::size_t>(_length) + 1) * sizeof(unsigned short);
    void* const copy = std::malloc(bytes);
    if (copy == nullptr) throwExhausted();
    std::memcpy(copy, other.block(), bytes);
    setBlock(static_cast<unsigned short*>(copy), _length);
  }
}

// Only for an object without a block.
inline void KOVAString::takeOver(KOVAString& other) noexcept {
  std::memcpy(_inside, other._inside, sizeof _inside);
  _onHeap = other._onHeap;
  _badConversion = other._badConversion;
  _length = other._length;
  other._inside[0] = 0;
  other._onHeap = false;
  other._badConversion = false;
  other._length = 0;
}
