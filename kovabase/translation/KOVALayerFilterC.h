#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

#include <optional>

/// Which layers of a model a translation takes: layer numbers in the order given, an optional
/// name, and whether it is the model's current filter. A plain value; copies are deep.
class KOVABASE_API KOVALayerFilterC {
 public:
  /// The enumerators are open: values other than these two are stored and returned as given.
  enum eLayerFilterType : int {
    kAllLayers = 0,
    kDefaultType = 2,
  };

  /// No name, not current, type 2, no layers.
  KOVALayerFilterC() = default;

  /// As `Set`; arguments that `Set` refuses leave the default filter.
  KOVALayerFilterC(int count, const int* layers, const KOVAString& name, bool current,
                   eLayerFilterType type);

  KOVALayerFilterC(const KOVALayerFilterC& other);
  KOVALayerFilterC& operator=(const KOVALayerFilterC& other);
  ~KOVALayerFilterC() = default;

  /// Replaces everything. `layers` holds `count` numbers and is copied; an empty `name` is no name.
  /// @return Failure, with nothing changed, unless count >= 1 with an array or 0 with null.
  KOVAResult Set(int count, const int* layers, const KOVAString& name, bool current,
                 eLayerFilterType type);

  /// @return Success.
  KOVAResult GetNumLayers(int& count) const;

  /// @return Failure with `layer` -1 for an index outside 0 .. count - 1.
  KOVAResult GetLayerAt(int index, int& layer) const;

  /// @return Failure, with `name` untouched, when the filter has no name.
  KOVAResult GetName(KOVAString& name) const;

  /// An empty text takes the name away.
  KOVAResult SetName(const KOVAString& name);

  /// Whether this is the model's current filter. @return Success.
  KOVAResult IsCurrent(bool& current) const;
  KOVAResult SetCurrent(bool current);

  /// Whether the type is 0, the filter that lets every layer through whatever its list.
  KOVAResult IsALLLayerFilter(bool& all) const;

  KOVAResult SetLayerFilterType(eLayerFilterType type);

 private:
  std::optional<KOVAString> _name;
  bool _current = false;
  eLayerFilterType _type = kDefaultType;
  KOVADynamicArray<int> _layers;
};
