#include "TextPieces.h"

#include "graphics/text/Utf8.h"

namespace quiravent::desktop {

namespace {

/// Characters that would show as the box of a missing glyph.
bool isLaidOutAsSpace(char32_t character) {
    const bool isControl = character < 0x20 || (character >= 0x7F && character <= 0x9F);
    return isControl || character == 0x2028 || character == 0x2029;
}

}  // namespace

std::u32string takePiece(std::string_view& text) {
    std::u32string piece;
    size_t cut = 0;
    std::string_view afterCut;
    while (!text.empty() && piece.size() < kMaxPieceLength) {
        const char32_t character = takeUtf8Character(text);
        piece += isLaidOutAsSpace(character) ? U' ' : character;
        if (piece.back() == U' ') {
            cut = piece.size();
            afterCut = text;
        }
    }
    if (!text.empty() && cut > 0) {
        piece.resize(cut);
        text = afterCut;
    }
    return piece;
}

}  // namespace quiravent::desktop
