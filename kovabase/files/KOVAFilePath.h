#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdint>
#include <cstdio>

struct stat64;

/// A file-system path, kept in one normalised form on every system: backslashes between the parts,
/// and "\\?\" before paths of more than 255 code units ("\\?\UNC\" in place of "\\" when they name
/// a server). This form is what callers see; it becomes the system's own only in the moment of a
/// call: slashes, no prefix, UTF-8. The empty path is invalid.
///
/// Lengths count UTF-16 code units. Operations on the file system fail for a path of 5,000 units or
/// more, and for one with U+0000 or half of a surrogate pair in it. File names that are not UTF-8,
/// or hold a backslash, are read with U+DC00 plus its value for each such byte, and written back as
/// they were.
///
/// Where an extension is asked for or replaced, a dot in a directory's name is none. Nothing throws
/// but KOVAAllocException, and nothing is logged but by GetShortFileNamePath. A path is a plain
/// value: one object belongs to one thread at a time. It may be an array element.
class KOVABASE_API KOVAFilePath {
 public:
  /// The invalid path.
  KOVAFilePath() noexcept = default;
  /// @param replaceInvalid  puts '_' for each of \ / | " : * ? < > in the last part.
  explicit KOVAFilePath(const KOVAString& path, bool replaceInvalid = false);
  /// Text in the default code page; null is the invalid path.
  explicit KOVAFilePath(const char* path, bool replaceInvalid = false);
  /// Joins the two with a backslash, unless `directory` ends with one: an empty directory
  /// gives "\name", and "d/" gives "d\\name". Both are kept so.
  KOVAFilePath(const KOVAString& directory, const KOVAString& name, bool replaceInvalid = false);
  /// The same with literals, which would otherwise pick the forms with a flag.
  KOVAFilePath(const KOVAString& directory, const char* name, bool replaceInvalid = false)
      : KOVAFilePath(directory, KOVAString(name), replaceInvalid) {}
  KOVAFilePath(const char* directory, const char* name, bool replaceInvalid = false)
      : KOVAFilePath(KOVAString(directory), KOVAString(name), replaceInvalid) {}
  KOVAFilePath(const KOVAFilePath& other) = default;
  KOVAFilePath(KOVAFilePath&& other) noexcept = default;
  KOVAFilePath& operator=(const KOVAFilePath& other) = default;
  KOVAFilePath& operator=(KOVAFilePath&& other) noexcept = default;
  virtual ~KOVAFilePath();

  virtual KOVAString GetPath() const;
  /// The part after the last backslash; the whole path when it has none.
  virtual KOVAString GetName() const;
  /// The name up to its first dot: "f" of "f.tar.gz".
  virtual KOVAString GetNameWithoutExtension() const;
  /// The name up to its last dot: "f.tar" of "f.tar.gz".
  virtual KOVAString GetNameWithoutLastExtension() const;
  /// What follows the last dot of the name, "gz" of "f.tar.gz"; empty when it has none.
  virtual KOVAString GetLastExtension() const;
  /// The path up to, not including, the last backslash; empty when it has none.
  virtual KOVAString GetDirectory() const;

  /// Whether the path is not empty.
  virtual bool IsValid() const;
  /// Whether the path starts with a separator, or with a drive and a separator ("C:\"); neither
  /// "C:" nor "C:a" is absolute.
  virtual bool IsAbsolute() const;
  /// @param extension  with or without its dot.
  virtual bool HasLastExtensionIgnoringCase(const KOVAString& extension) const;

  /// Adds a dot and the extension to this path: "a" and ".x" make "a..x". The path is not
  /// normalised again.
  virtual void AddExtension(const KOVAString& extension);
  /// @param extension  with or without its dot; added when the name has no extension.
  virtual KOVAFilePath ReplaceLastExtension(const KOVAString& extension) const;
  /// Replaces everything from the first dot of the name on.
  /// @param extension  with its dot, which is not added here: "a.b.c" and "x" make "ax".
  virtual KOVAFilePath ReplaceFirstExtension(const KOVAString& extension) const;

  /// Where the file that this path names, perhaps on another machine, is to be found from the
  /// directory of `base`: this path itself when it is absolute and exists; otherwise the shortest
  /// tail of it (the name, the name with its parent, ...) that exists there, or the name there when
  /// none does. One question to the file system for each part of the path.
  /// @param isDirectory  asks for existence of any kind instead of a file's.
  virtual KOVAFilePath ResolveAgainst(const KOVAFilePath& base, bool isDirectory) const;

  /// Whether a file can be opened for reading; false for directories. A pipe is not waited for.
  virtual bool DoesFileExist() const;
  /// Whether there is anything of this name: true for a file too, and kept so.
  virtual bool DoesDirectoryExist() const;
  /// @param mode  as for `fopen`, at most 15 characters.
  /// @return a stream that the caller closes, or null; null for directories too.
  virtual std::FILE* OpenFile(const char* mode) const;
  /// Nothing is overwritten: an existing `newPath` is a failure.
  /// @return Success, InvalidArgument when either path is invalid, or Failure.
  virtual KOVAResult RenameFile(const KOVAFilePath& newPath) const;
  /// Removes a file or a link, never a directory. @return whether it is gone now.
  virtual bool RemoveFile() const;
  /// @return Success, InvalidArgument for the invalid path, or Failure, also when it exists
  /// already.
  virtual KOVAResult MakeDirectory() const;
  /// @return as MakeDirectory.
  virtual KOVAResult RemoveEmptyDirectory() const;
  /// Removes the directory and all that is in it. Links are removed and not followed.
  /// @return InvalidArgument for the invalid path, Failure for one that no call takes, otherwise
  ///   Success, whether or not everything could be removed: ask DoesDirectoryExist.
  virtual KOVAResult RemoveNonEmptyDirectory() const;

  /// Appends `text` to this path: glued on when it starts with a dot, else as a further part.
  KOVAFilePath operator+(const KOVAString& text) const;

  /// The leading parts of this path that are those of `other`'s directory too, ignoring case, in
  /// this path's spelling and with a backslash at the end; invalid when there are none or this
  /// path's name is empty.
  KOVAFilePath FindCommonPath(const KOVAFilePath& other) const;

  /// Sets the size (its low 32 bits alone, and kept so), the times of the last access and
  /// modification and, as the time of change, that of creation: of the last change of status where
  /// the file system does not know it. All other fields are 0, all fields on failure.
  KOVAResult GetFileStats(struct stat64& status) const;
  /// Bytes modulo 2^32. This and the dates below leave their output alone on failure.
  KOVAResult GetFileSize(unsigned int& bytes) const;
  /// Seconds since 1970-01-01 UTC.
  KOVAResult GetCreationDate(std::int64_t& seconds) const;
  KOVAResult GetLastAccessDate(std::int64_t& seconds) const;
  KOVAResult GetLastModificationDate(std::int64_t& seconds) const;

  /// A second, shorter name for an existing file whose path narrow interfaces cannot open, and says
  /// so by warnings and errors. This system has none to offer.
  /// @return Failure; NotImplemented when the environment variable "KOVA_WIN_SHORT_NAME" is set and
  ///   not "true". `shortPath` is left alone.
  KOVAResult GetShortFileNamePath(KOVAFilePath& shortPath) const;

  /// The process's working directory; invalid when it is gone or too long.
  static KOVAFilePath GetCurrentWorkingDirectory();

 protected:
  /// A hook for derived classes, empty here and not called by this class.
  virtual void Initialize();
  /// Turns each slash into a backslash.
  virtual void FixSeparator(KOVAString& text) const;

  /// What the constructors do, with the derived class's FixSeparator.
  void InitializeFromPathString(const KOVAString& path, bool replaceInvalid);

  /// The path in the default code page, '_' for what it lacks.
  /// @return Failure when that needs more than `size` bytes, terminator included.
  KOVAResult GetMBCSBuffer(char* buffer, int size) const;
  /// The path in UTF-16. @param size  units, terminator included.
  KOVAResult GetWideCharacterBuffer(unsigned short* buffer, int size) const;

 private:
  int GetLastSeparatorIndex() const noexcept;
  int GetNameIndex() const noexcept { return GetLastSeparatorIndex() + 1; }
  int GetFirstExtensionIndex() const noexcept;
  int GetLastExtensionIndex() const noexcept;

  KOVAString _path;
};
