#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// A name with a text as its value. The name stays, the value may change.
class KOVABASE_API KOVAProperty : public KOVAReferenceCount {
 public:
  KOVAProperty(const KOVAString& name, const KOVAString& value);
  ~KOVAProperty() override;

  /// Not GetName, which names counted objects in diagnostics.
  const KOVAString& GetPropertyName() const noexcept { return _name; }
  const KOVAString& GetPropertyValue() const noexcept { return _value; }
  void SetPropertyValue(const KOVAString& value) { _value = value; }

 private:
  KOVAString _name;
  KOVAString _value;
};

using KOVAPropertyHandle = KOVATypedHandle<KOVAProperty>;

/// Properties in the order in which they were added. Names are case-sensitive and may occur more
/// than once; the first one counts. A search looks at one after the other.
class KOVABASE_API KOVAPropertyContainer : public KOVAReferenceCount {
 public:
  KOVAPropertyContainer();
  ~KOVAPropertyContainer() override;

  /// Shares the property. @return Success, or InvalidArgument for null.
  KOVAResult AddProperty(const KOVAPropertyHandle& property);
  int GetPropertyCount() const noexcept { return _properties.size(); }
  /// Null outside 0 .. count - 1.
  KOVAPropertyHandle GetProperty(int index) const;
  /// The first of that name, or null.
  KOVAPropertyHandle FindProperty(const KOVAString& name) const;
  /// Removes the first of that name. @return Success, or Failure when there is none.
  KOVAResult RemoveProperty(const KOVAString& name);

 private:
  int indexOf(const KOVAString& name) const;

  KOVADynamicArray<KOVAPropertyHandle> _properties;
};

using KOVAPropertyContainerHandle = KOVATypedHandle<KOVAPropertyContainer>;

/// Names and their texts, by value, over a property container. Copies share the container. One
/// thread at a time, or any number that only read.
class KOVABASE_API KOVAProperties {
 public:
  KOVAProperties();
  KOVAProperties(const KOVAProperties& other) = default;
  KOVAProperties& operator=(const KOVAProperties& other) = default;
  virtual ~KOVAProperties();

  /// Adds a property from one text: name, equals sign, value. Without an equals sign the value is
  /// empty; one at the start belongs to the name.
  /// @return Success, or InvalidArgument for the empty text.
  KOVAResult AddEntry(const KOVAString& entry);
  /// Gives the first property of that name a new value, or adds one.
  /// @return Success, or InvalidArgument for an empty name.
  KOVAResult SetProperty(const KOVAString& name, const KOVAString& value);
  /// @return Success, or Failure with `value` untouched when there is no such property.
  KOVAResult GetProperty(const KOVAString& name, KOVAString& value) const;
  /// @return Success, or Failure when there is no such property.
  KOVAResult RemoveProperty(const KOVAString& name);

  /// Never null.
  KOVAPropertyContainerHandle GetPropertyContainer() const { return _container; }

 private:
  KOVAPropertyContainerHandle _container;
};
