#pragma once

namespace quiravent {

/// The order in which the module's static objects are made; they are taken down the other way
/// round. An optimising linker doesn't keep that of the sources, so each object names its place:
///
///     Type Class::s_object __attribute__((init_priority(quiravent::kObject)));
///
/// What names none comes after all of these: the registration of the module, which is the last.
/// Numbers up to 100 are the C++ library's.
enum InitOrder {
    kFontConstructor = 101,
    kCanvasConstructor,
    kAdPlayerConstructor,
    kMediaPlayerConstructor,
    kPersistentConstructor,
    kDtvPlayerConstructor,
    kDemuxFilterConstructor,
    kFonts,
    kCanvasesWithFont,
    kColors,
    kBlendModes,
    kCanvases,
    kMediaPlayerComponents,
    kAdPlayerComponents,
    kProperties,
};

}  // namespace quiravent
