// The titles of the nine pages, and the page a title names.
#include "store/page.h"

namespace quorrin::store {

std::string_view rawValue(Page page) {
    switch (page) {
        case Page::overview:
            return "Overview";
        case Page::allFiles:
            return "All files";
        case Page::findOlder:
            return "FindOlder";
        case Page::duplicates:
            return "Duplicates";
        case Page::downloadsReview:
            return "Downloads review";
        case Page::fileHealth:
            return "File health";
        case Page::keptFiles:
            return "Kept files";
        case Page::foldersSettings:
            return "Folders & settings";
        case Page::activity:
            return "Activity";
    }
    return {};
}

std::optional<Page> pageFrom(std::string_view text) {
    for (Page page : allPages)
        if (rawValue(page) == text)
            return page;
    return std::nullopt;
}

}  // namespace quorrin::store
