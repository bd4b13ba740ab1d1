#include "FontWrapper.h"
#include "support/InitOrder.h"

Nan::Persistent<v8::Function> FontWrapper::constructor
    __attribute__((init_priority(quiravent::kFontConstructor)));
