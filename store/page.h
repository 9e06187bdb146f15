// Page: the nine pages of the window, in sidebar order; the raw value is the page's title.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quorrin::store {

enum class Page {
    overview,
    allFiles,
    findOlder,
    duplicates,
    downloadsReview,
    fileHealth,
    keptFiles,
    foldersSettings,
    activity,
};

inline constexpr std::array<Page, 9> allPages = {
    Page::overview,   Page::allFiles,        Page::findOlder,
    Page::duplicates, Page::downloadsReview, Page::fileHealth,
    Page::keptFiles,  Page::foldersSettings, Page::activity};

std::string_view rawValue(Page page);
std::optional<Page> pageFrom(std::string_view rawValue);

}  // namespace quorrin::store
