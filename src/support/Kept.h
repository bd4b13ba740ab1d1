#pragma once

/// Marks what is part of the module although nothing in it calls it: the linker would drop it, and
/// with it a function of the porting layer from what the module needs.
#define QUIRAVENT_KEPT __attribute__((used, retain))
