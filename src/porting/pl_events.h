#pragma once

/// Lets the platform hand events of digital television to the application. The module calls it as
/// PlatformServices::EnableDTVEvents, a static member function of a C++ class of its own, which a
/// porting layer defines; this declares a plain function under that very symbol, so that a layer
/// needs no part of the module's class. Called on the script thread. May be left out by a layer:
/// the module is loaded all the same, and only an application that calls it ends with the loader's
/// error.
__attribute__((visibility("default"))) void pl_EnableDTVEvents() __asm__(
    "_ZN16PlatformServices15EnableDTVEventsEv");
