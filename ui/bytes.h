// bytes(): the byte-count text used for every size the window shows.
#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>

namespace quorrin::ui {

// A file-manager style size with decimal (1000-based) units: "Zero KB", "1 byte", "999 bytes",
// then KB without decimals, MB with one, GB and larger with two, trailing zeros dropped ("2 KB",
// "1.2 MB", "1.23 GB", "3 GB"). A value that rounds up to 1000 of a unit is written in the next
// unit ("1 MB", not "1000 KB"). Negative counts carry a minus sign. Numbers follow `locale`.
QString bytes(std::int64_t count, const QLocale& locale = QLocale());

// a + b, or a fatal error when the sum does not fit: a size total must never wrap.
std::int64_t checkedSum(std::int64_t a, std::int64_t b);

}  // namespace quorrin::ui
