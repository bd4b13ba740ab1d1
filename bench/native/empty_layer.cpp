#include "porting/pl_functions.h"

// A porting layer that does nothing and succeeds: every handle is 1, all else is left alone.

namespace {

void answer(uint32_t* word) { *word = 1; }

template <class Argument>
void answer(Argument&) {}

template <class... Arguments>
void answerAll(Arguments&... arguments) {
    (answer(arguments), ...);
}

}  // namespace

#define PL_FUNCTION(result, name, parameters, arguments) \
    result name parameters {                             \
        answerAll arguments;                             \
        return static_cast<result>(0);                   \
    }
#include "porting/pl_functions.def"
