#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "media/SubtitleCue.h"

namespace quiravent::desktop {

/// How what is written next looks.
struct CaptionPen {
    Color color{255, 255, 255, 255};
    Color background{0, 0, 0, 255};

    bool operator==(const CaptionPen& other) const;
};

/// One of the eight windows of a service of CEA-708: a grid of characters with a place on the
/// picture and a pen. For one thread.
class CaptionWindow {
  public:
    static constexpr unsigned kMaxRows = 15;
    static constexpr unsigned kMaxColumns = 42;

    /// What a window is defined with.
    struct Definition {
        bool visible;
        bool relative;       ///< the anchor is given in hundredths of the picture's safe area
        uint8_t anchorDown;  ///< in cells of the safe area's grid of 75 by 210
        uint8_t anchorAcross;
        uint8_t anchorPoint;  ///< which point of the window lies there: 0 to 8, row by row
        uint8_t rows;         ///< 1 to kMaxRows
        uint8_t columns;      ///< 1 to kMaxColumns
        uint8_t priority;     ///< 0 lies above all others
        uint8_t windowStyle;  ///< 1 to 7; 0: as it is, or 1 for a new window
        uint8_t penStyle;
    };
    struct Attributes {
        Color fill{0, 0, 0, 255};
        PlacedLine::Anchor justify = PlacedLine::Anchor::left;
    };

    bool isDefined() const { return m_defined; }
    bool isVisible() const { return m_defined && m_visible; }
    uint8_t priority() const { return m_definition.priority; }
    void setVisible(bool visible) { m_visible = visible; }

    /// A new window is empty; one that exists keeps its text.
    void define(const Definition& definition);
    void remove() { *this = CaptionWindow(); }
    void setAttributes(const Attributes& attributes) { m_attributes = attributes; }
    CaptionPen& pen() { return m_pen; }

    void write(const std::string& character);
    /// A row or column beyond the window is held to it.
    void movePen(unsigned row, unsigned column);
    void backspace();
    /// To the beginning of the next row; at the last one, all rows move up.
    void nextRow();
    void clearRow();
    void clear();

    /// Adds what is seen of the window.
    void addTo(SubtitleCue& cue) const;

  private:
    struct Cell {
        std::string character;  ///< empty: nothing was written here
        CaptionPen pen;
    };
    using Row = std::vector<Cell>;

    void applyWindowStyle(uint8_t style);
    void applyPenStyle(uint8_t style);
    std::vector<StyledText> piecesOf(const Row& row) const;

    bool m_defined = false;
    bool m_visible = false;
    Definition m_definition{};
    Attributes m_attributes;
    CaptionPen m_pen;
    std::vector<Row> m_rows;
    unsigned m_row = 0;
    unsigned m_column = 0;
};

}  // namespace quiravent::desktop
