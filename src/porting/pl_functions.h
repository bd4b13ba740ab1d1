#pragma once

#include <type_traits>

#include "porting/pl_dtv.h"
#include "porting/pl_gfx.h"
#include "porting/pl_input.h"
#include "porting/pl_media.h"
#include "porting/pl_persistent.h"
#include "porting/pl_platform.h"
#include "porting/pl_status.h"

// All of the interface. The list of its functions says what the declarations say, wherever it is
// used:
#define PL_FUNCTION(result, name, parameters, arguments)                  \
    static_assert(std::is_same<decltype(name), result parameters>::value, \
                  #name " is declared otherwise than it is listed");
#include "porting/pl_functions.def"
