#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVABuffer.h"

/// What reading and writing sections have in common.
namespace kova::internal {

/// The section at the cursor, which moves on; null without a buffer and at the end.
template <class Section>
Section* nextSection(const KOVABufferHandle& buffer,
                     const KOVADynamicArray<KOVATypedHandle<Section>>& sections, int& cursor) {
  if (!buffer.IsValid() || cursor >= sections.size()) return nullptr;
  return sections[cursor++];
}

/// The entities of all sections, one section after the other.
template <class Entity, class Section>
KOVADynamicArray<Entity*> entitiesOf(const KOVADynamicArray<KOVATypedHandle<Section>>& sections) {
  KOVADynamicArray<Entity*> entities;
  for (int i = 0; i < sections.size(); ++i) {
    Section* const section = sections[i];
    entities.append(section->GetEntityList());
  }
  return entities;
}

inline KOVAResult resetBuffer(const KOVABufferHandle& buffer, unsigned long position) {
  KOVABuffer* const target = buffer;
  if (target == nullptr) return KOVAResultCode::kInvalidObject;
  return target->SetOffset(static_cast<long>(position));
}

/// Runs a step on every entity of every section that `next` hands out.
template <class Next, class Step>
KOVAResult forEachEntity(Next next, Step step) {
  KOVAResult result = KOVAResultCode::kSuccess;
  while (auto* const section = next()) {
    while (auto* const entity = section->GetNextKey()) result &= step(*entity);
  }
  return result;
}

/// The first step of the data sections: a format that does not supply it has nothing to do.
inline KOVAResult unlessNotImplemented(KOVAResult result) {
  return result == KOVAResultCode::kNotImplemented ? KOVAResult(KOVAResultCode::kSuccess) : result;
}

}  // namespace kova::internal
