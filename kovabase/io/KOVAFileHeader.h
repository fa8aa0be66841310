#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/KOVAString.h"

#include <cstddef>
#include <vector>

class KOVAStreamFormatter;

/// What a file says about itself: named texts such as its author, its origin or its schema. A file
/// that holds several configurations (models) has entries for each; one configuration at a time is
/// the active one. A reader may derive from this class to answer out of its own data.
///
/// One thread at a time.
class KOVABASE_API KOVAFileHeader {
 public:
  /// One configuration without entries, the active one.
  KOVAFileHeader();
  KOVAFileHeader(const KOVAFileHeader&);
  KOVAFileHeader& operator=(const KOVAFileHeader&);
  virtual ~KOVAFileHeader();

  virtual int GetNumberOfConfigurations();
  /// @param index  from 0; any other value leaves the active configuration as it is.
  virtual void SetActiveConfiguration(int index);
  /// The entries of the active configuration.
  virtual int GetNumberOfEntries();
  /// Writes the entries of the active configuration in the order in which they were added, one line
  /// "key : value" each.
  virtual void Write(KOVAStreamFormatter& formatter);

  /// Adds a configuration without entries and makes it the active one. @return its index.
  int AddConfiguration();
  /// Adds to the active configuration; a key may occur several times.
  void AddEntry(const KOVAString& key, const KOVAString& value);

 private:
  struct Entry {
    KOVAString key;
    KOVAString value;
  };
  using Configuration = std::vector<Entry>;

  Configuration& GetActive() { return _configurations[_active]; }

  std::vector<Configuration> _configurations;
  std::size_t _active = 0;
};
