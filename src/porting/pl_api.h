#pragma once

#include <cstdint>

/// Linkage of every function of the porting layer's interface: C names, visible to the loader.
/// The four pl_persistent_ functions have it too, although they take C++ library types, so that
/// module and porting layer must be built against the same C++ library.
#define PL_API extern "C" __attribute__((visibility("default")))

// What holds for the whole interface, unless a function says otherwise:
//
// - Handles are opaque 32-bit values; 0 means none and is never given out. A layer answers a
//   handle that it doesn't know, that is released, or that is of another kind with an error
//   status and does nothing else.
// - Results of type int32_t are a status, see pl_status.h. Outputs are written on success only.
// - Pointers are valid for the length of the call only: the layer copies what it keeps, and never
//   frees what it was given. Texts are NUL-terminated UTF-8. A pointer is never null where a
//   function doesn't say that it may be.
// - "Script thread" is the one thread on which the application's code runs; it draws and it answers
//   the remote control, so a function called there must come back at once and leave slow work to
//   threads of the layer. "Pool thread" is one of a few threads of the script runtime; a function
//   called there may block, but keeps that thread from all other background work meanwhile.
// - Different functions of one group can be called by different threads at the same time.
// - Callbacks may be called from any thread of the layer's own, with no lock of the layer held,
//   and never from inside a function of the same group. A callback may block for as long as the
//   script thread needs to take what is queued. No function takes a callback back: once it is
//   registered it may be called for as long as the process lives. It is never null.
