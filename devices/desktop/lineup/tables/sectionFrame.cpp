#include "lineup/tables/sectionFrame.h"

#include "television/Crc32.h"
#include "television/tableIds.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr unsigned kChecksumSize = 4;

/// The bits before the length: tables of DVB set the second one, those of MPEG don't.
unsigned highBitsOf(uint8_t tableId) { return tableId < table::kNitActual ? 0xB : 0xF; }

}  // namespace

Bytes withChecksum(ByteWriter writer) {
    writer.doubleWord(crc32(writer.bytes().data(), writer.bytes().size()));
    return writer.take();
}

Bytes longSection(const SectionHead& head, const WriteBody& writeBody) {
    constexpr unsigned kVersionAndCurrent = 0xC1;
    ByteWriter body;
    body.word(head.extension);
    body.byte(kVersionAndCurrent);
    body.byte(head.number);
    body.byte(head.lastNumber);
    writeBody(body);
    ByteWriter section;
    section.byte(head.tableId);
    const size_t length = body.bytes().size() + kChecksumSize;
    section.word(highBitsOf(head.tableId) << 12 | static_cast<unsigned>(length));
    section.append(body.bytes());
    return withChecksum(std::move(section));
}

}  // namespace quiravent::desktop::lineup
