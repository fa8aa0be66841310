#include "kovabase/files/Gk_FileElement.h"

Gk_FileElement::~Gk_FileElement() = default;

bool Gk_FileElement::IsDirectory() const { return false; }
