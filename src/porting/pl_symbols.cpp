#include "porting/pl_functions.h"

// Every symbol of the interface and nothing behind it: what the module is linked with. No part of
// this is ever called; a layer's own library takes its place when the module is loaded.
#define PL_FUNCTION(result, name, parameters, arguments)                        \
    __attribute__((visibility("default"))) void name##_symbol() __asm__(#name); \
    void name##_symbol() {}
#include "porting/pl_functions.def"
