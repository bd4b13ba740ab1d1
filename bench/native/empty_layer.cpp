#include "empty_layer.h"

#include <atomic>
#include <string>

#include "porting/pl_functions.h"

// A porting layer that does nothing and succeeds: every handle is 1, a text that is asked for is
// short, all else is left alone. Only the callback for keys is kept, so that events can be
// measured.

namespace {

std::atomic<pl_input_key_callback> s_keyCallback{nullptr};

void answer(uint32_t* word) { *word = 1; }
void answer(std::string& text) { text = "value"; }
void answer(pl_input_key_callback& callback) { s_keyCallback = callback; }

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

pl_input_key_callback bench_keyCallback() { return s_keyCallback; }
