#pragma once

#include "kovabase/foundation/KOVAExport.h"

class KOVCEvent;

/// Receives the events of the bus. The bus does not own it: remove it before it is destroyed.
class KOVABASE_API KOVCEventListener {
 public:
  /// Handles one event, on the thread that sent it, or after a parallel phase on the thread that
  /// ends that phase. What it throws reaches that thread. The event is not the listener's: clone it
  /// to keep it.
  virtual void HandleEvent(KOVCEvent& event) = 0;
  virtual ~KOVCEventListener();
};
