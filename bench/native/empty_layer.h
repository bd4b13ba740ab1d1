#pragma once

#include "porting/pl_input.h"

/// The callback for keys that the module registered last; null before. Any thread.
PL_API pl_input_key_callback bench_keyCallback();
