#include "kovabase/translation/KOVALayerFilterC.h"

KOVALayerFilterC::KOVALayerFilterC(int count, const int* layers, const KOVAString& name,
                                   bool current, eLayerFilterType type) {
  Set(count, layers, name, current, type);
}

KOVALayerFilterC::KOVALayerFilterC(const KOVALayerFilterC& other)
    : _name(other._name),
      _current(other._current),
      _type(other._type),
      _layers(other._layers.copy()) {}

KOVALayerFilterC& KOVALayerFilterC::operator=(const KOVALayerFilterC& other) {
  if (this == &other) return *this;
  // What can fail comes first, so that a failure leaves the filter as it was.
  const KOVADynamicArray<int> layers = other._layers.copy();
  _name = other._name;
  _layers = layers;
  _current = other._current;
  _type = other._type;
  return *this;
}

KOVAResult KOVALayerFilterC::Set(int count, const int* layers, const KOVAString& name, bool current,
                                 eLayerFilterType type) {
  const bool agree = layers != nullptr ? count >= 1 : count == 0;
  if (!agree) return KOVAResultCode::kFailure;

  KOVADynamicArray<int> numbers;
  numbers.reserve(count);
  for (int i = 0; i < count; ++i) numbers.add(layers[i]);
  SetName(name);
  _layers = numbers;
  _current = current;
  _type = type;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::GetNumLayers(int& count) const {
  count = _layers.size();
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::GetLayerAt(int index, int& layer) const {
  if (index < 0 || index >= _layers.size()) {
    layer = -1;
    return KOVAResultCode::kFailure;
  }
  layer = _layers[index];
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::GetName(KOVAString& name) const {
  if (!_name) return KOVAResultCode::kFailure;
  name = *_name;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::SetName(const KOVAString& name) {
  if (name.length() > 0) {
    _name = name;
  } else {
    _name.reset();
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::IsCurrent(bool& current) const {
  current = _current;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::SetCurrent(bool current) {
  _current = current;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::IsALLLayerFilter(bool& all) const {
  all = _type == kAllLayers;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALayerFilterC::SetLayerFilterType(eLayerFilterType type) {
  _type = type;
  return KOVAResultCode::kSuccess;
}
