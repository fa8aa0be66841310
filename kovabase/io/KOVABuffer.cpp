#include "kovabase/io/KOVABuffer.h"

KOVABuffer::~KOVABuffer() = default;
