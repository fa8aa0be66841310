#pragma once

/// For a few bytes of thread-local data on a hot path: they are placed at program start, so that
/// reaching them takes one instruction instead of a call. The place for libraries that are loaded
/// later is small, so only words belong here.
#define KOVABASE_STATIC_THREAD_LOCAL \
  constinit thread_local __attribute__((tls_model("initial-exec")))
