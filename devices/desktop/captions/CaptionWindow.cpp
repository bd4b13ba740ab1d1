#include "captions/CaptionWindow.h"

#include <algorithm>
#include <tuple>

#include "captions/safeArea.h"

namespace quiravent::desktop {

namespace {

constexpr double kColumnWidth = kSafeSide / 42;
constexpr double kGridRows = 75;
constexpr double kGridColumns = 210;
constexpr double kHundredths = 100;
constexpr Color kTransparent{0, 0, 0, 0};

std::tuple<uint8_t, uint8_t, uint8_t, uint8_t> parts(const Color& color) {
    return {color.red, color.green, color.blue, color.alpha};
}

}  // namespace

bool CaptionPen::operator==(const CaptionPen& other) const {
    return parts(color) == parts(other.color) && parts(background) == parts(other.background);
}

void CaptionWindow::define(const Definition& definition) {
    if (!m_defined) {
        applyWindowStyle(std::max<uint8_t>(definition.windowStyle, 1));
        applyPenStyle(std::max<uint8_t>(definition.penStyle, 1));
        m_row = m_column = 0;
    } else {
        if (definition.windowStyle != 0) applyWindowStyle(definition.windowStyle);
        if (definition.penStyle != 0) applyPenStyle(definition.penStyle);
    }
    m_defined = true;
    m_visible = definition.visible;
    m_definition = definition;
    m_rows.resize(definition.rows);
    for (Row& row : m_rows) row.resize(definition.columns);
    movePen(m_row, m_column);
}

// The seven predefined styles of windows, as far as they can be seen.
void CaptionWindow::applyWindowStyle(uint8_t style) {
    const bool isClear = style == 2 || style == 5;
    const bool isCentred = style == 3 || style == 6;
    m_attributes = {};
    if (isClear) m_attributes.fill = kTransparent;
    if (isCentred) m_attributes.justify = PlacedLine::Anchor::centre;
}

void CaptionWindow::applyPenStyle(uint8_t style) {
    constexpr uint8_t kFirstWithoutBackground = 6;
    m_pen = {};
    if (style >= kFirstWithoutBackground) m_pen.background = kTransparent;
}

void CaptionWindow::write(const std::string& character) {
    if (!m_defined) return;
    m_rows[m_row][m_column] = {character, m_pen};
    if (m_column + 1 < m_definition.columns) ++m_column;
}

void CaptionWindow::movePen(unsigned row, unsigned column) {
    if (!m_defined) return;
    m_row = std::min<unsigned>(row, m_definition.rows - 1U);
    m_column = std::min<unsigned>(column, m_definition.columns - 1U);
}

void CaptionWindow::backspace() {
    if (!m_defined) return;
    if (m_column > 0) --m_column;
    m_rows[m_row][m_column] = {};
}

void CaptionWindow::nextRow() {
    if (!m_defined) return;
    m_column = 0;
    if (m_row + 1 < m_definition.rows) {
        ++m_row;
        return;
    }
    std::rotate(m_rows.begin(), m_rows.begin() + 1, m_rows.end());
    clearRow();
}

void CaptionWindow::clearRow() {
    if (!m_defined) return;
    m_rows[m_row].assign(m_definition.columns, Cell{});
    m_column = 0;
}

void CaptionWindow::clear() {
    for (Row& row : m_rows) row.assign(m_definition.columns, Cell{});
    m_row = m_column = 0;
}

std::vector<StyledText> CaptionWindow::piecesOf(const Row& row) const {
    std::vector<StyledText> pieces;
    const auto isWritten = [](const Cell& cell) { return !cell.character.empty(); };
    const auto last = std::find_if(row.rbegin(), row.rend(), isWritten).base();
    const CaptionPen* pen = nullptr;
    for (auto cell = row.begin(); cell != last; ++cell) {
        if (pen == nullptr || !(cell->pen == *pen)) {
            // What lies between written characters takes the look of what stands before.
            if (pen == nullptr || isWritten(*cell)) {
                pieces.push_back({"", cell->pen.color, cell->pen.background});
                pen = &cell->pen;
            }
        }
        pieces.back().text += isWritten(*cell) ? cell->character : " ";
    }
    return pieces;
}

void CaptionWindow::addTo(SubtitleCue& cue) const {
    const double width = m_definition.columns * kColumnWidth;
    const double height = m_definition.rows * kRowHeight;
    const double down = m_definition.relative ? kHundredths : kGridRows;
    const double across = m_definition.relative ? kHundredths : kGridColumns;
    const double x = kSafeMargin + kSafeSide * m_definition.anchorAcross / across;
    const double y = kSafeMargin + kSafeSide * m_definition.anchorDown / down;
    const int anchorRow = m_definition.anchorPoint / 3;
    const double left = std::clamp(x - width * (m_definition.anchorPoint % 3) / 2, 0.0, 1 - width);
    const double top = std::clamp(y - height * anchorRow / 2, 0.0, 1 - height);
    bool isEmpty = true;
    const double places[] = {left, left + width / 2, left + width};
    const double place = places[static_cast<size_t>(m_attributes.justify)];
    std::vector<PlacedLine> lines;
    for (size_t row = 0; row < m_rows.size(); ++row) {
        std::vector<StyledText> pieces = piecesOf(m_rows[row]);
        if (pieces.empty()) continue;
        isEmpty = false;
        const double bottom = top + kRowHeight * static_cast<double>(row + 1);
        lines.push_back({m_attributes.justify, place, bottom, std::move(pieces)});
    }
    if (isEmpty) return;
    if (m_attributes.fill.alpha != 0)
        cue.areas.push_back({left, top, left + width, top + height, m_attributes.fill});
    for (PlacedLine& line : lines) cue.placedLines.push_back(std::move(line));
}

}  // namespace quiravent::desktop
