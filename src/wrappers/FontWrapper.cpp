#include "FontWrapper.h"

Nan::Persistent<v8::Function> FontWrapper::constructor;
