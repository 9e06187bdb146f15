// The picker texts of FileDateBasis and the date each case takes from an entry.
#include "engine/file_date_basis.h"

namespace quorrin::Engine {

std::string_view rawValue(FileDateBasis basis) {
    switch (basis) {
        case FileDateBasis::created:
            return "Created date";
        case FileDateBasis::modified:
            return "Last modified date";
    }
    return {};
}

std::optional<FileDateBasis> fileDateBasisFrom(std::string_view raw) {
    for (FileDateBasis basis : allFileDateBases) {
        if (rawValue(basis) == raw)
            return basis;
    }
    return std::nullopt;
}

std::optional<Instant> date(FileDateBasis basis, const Entry& entry) {
    switch (basis) {
        case FileDateBasis::created:
            return entry.created;
        case FileDateBasis::modified:
            return entry.modified;
    }
    return std::nullopt;
}

}  // namespace quorrin::Engine
