#include "kovabase/events/KOVCEventListener.h"

KOVCEventListener::~KOVCEventListener() = default;
