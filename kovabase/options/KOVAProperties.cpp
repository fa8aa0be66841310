#include "kovabase/options/KOVAProperties.h"

#include "kovabase/foundation/KOVAAllocException.h"

#include <new>

namespace {

KOVAPropertyHandle makeProperty(const KOVAString& name, const KOVAString& value) {
  KOVAProperty* const property = new (std::nothrow) KOVAProperty(name, value);
  if (property == nullptr) throw KOVAAllocException();
  return KOVAPropertyHandle(property);
}

}  // namespace

KOVAProperty::KOVAProperty(const KOVAString& name, const KOVAString& value)
    : _name(name), _value(value) {}

KOVAProperty::~KOVAProperty() = default;

KOVAPropertyContainer::KOVAPropertyContainer() = default;

KOVAPropertyContainer::~KOVAPropertyContainer() = default;

KOVAResult KOVAPropertyContainer::AddProperty(const KOVAPropertyHandle& property) {
  if (!property.IsValid()) return KOVAResultCode::kInvalidArgument;
  _properties.add(property);
  return KOVAResultCode::kSuccess;
}

KOVAPropertyHandle KOVAPropertyContainer::GetProperty(int index) const {
  return _properties.isValidIndex(index) ? _properties[index] : KOVAPropertyHandle();
}

KOVAPropertyHandle KOVAPropertyContainer::FindProperty(const KOVAString& name) const {
  return GetProperty(indexOf(name));
}

KOVAResult KOVAPropertyContainer::RemoveProperty(const KOVAString& name) {
  return _properties.removeAt(indexOf(name)) ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

int KOVAPropertyContainer::indexOf(const KOVAString& name) const {
  for (int i = 0; i < _properties.size(); ++i) {
    if (_properties[i]->GetPropertyName() == name) return i;
  }
  return -1;
}

KOVAProperties::KOVAProperties() : _container(new (std::nothrow) KOVAPropertyContainer) {
  if (!_container.IsValid()) throw KOVAAllocException();
}

KOVAProperties::~KOVAProperties() = default;

KOVAResult KOVAProperties::AddEntry(const KOVAString& entry) {
  if (entry.isEmpty()) return KOVAResultCode::kInvalidArgument;
  const int mark = entry.indexOf(static_cast<unsigned short>('='), 1);
  const KOVAString name = mark < 0 ? entry : entry.substring(0, mark);
  const KOVAString value = mark < 0 ? KOVAString() : entry.substring(mark + 1);
  return _container->AddProperty(makeProperty(name, value));
}

KOVAResult KOVAProperties::SetProperty(const KOVAString& name, const KOVAString& value) {
  if (name.isEmpty()) return KOVAResultCode::kInvalidArgument;
  KOVAPropertyHandle property = _container->FindProperty(name);
  if (!property.IsValid()) return _container->AddProperty(makeProperty(name, value));
  property->SetPropertyValue(value);
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAProperties::GetProperty(const KOVAString& name, KOVAString& value) const {
  const KOVAPropertyHandle property = _container->FindProperty(name);
  if (!property.IsValid()) return KOVAResultCode::kFailure;
  value = property->GetPropertyValue();
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAProperties::RemoveProperty(const KOVAString& name) {
  return _container->RemoveProperty(name);
}
