// The fixed tables: extensions per category, project markers, protected names and packages.
#include "engine/tables.h"

namespace quorrin::Engine {
namespace {

// Each extension list is one space-separated text, split on single spaces when first needed.
NameSet splitWords(std::string_view words) {
    NameSet set;
    std::size_t start = 0;
    while (start < words.size()) {
        std::size_t end = words.find(' ', start);
        if (end == std::string_view::npos)
            end = words.size();
        set.insert(words.substr(start, end - start));
        start = end + 1;
    }
    return set;
}

}  // namespace

const std::vector<CategoryRow>& categories() {
    static const std::vector<CategoryRow> rows = {
        {"01 Videos", splitWords("mp4 mov m4v avi mkv webm mpeg mpg mts m2ts")},
        {"02 Images",
         splitWords("jpg jpeg png gif heic heif webp avif tif tiff bmp svg cr3 cr2 arw nef dng")},
        {"03 Audio", splitWords("mp3 wav aac m4a aiff aif flac ogg")},
        {"04 Documents",
         splitWords("pdf doc docx xls xlsx csv ppt pptx txt rtf pages numbers key html")},
        {"05 Installers and ZIP", splitWords("dmg pkg zip rar 7z tar gz")},
    };
    return rows;
}

const std::array<std::string_view, 7>& categoryNames() {
    static constexpr std::array<std::string_view, 7> names = {
        "01 Videos",        "02 Images",     "03 Audio", "04 Documents", "05 Installers and ZIP",
        otherFilesCategory, projectsCategory};
    return names;
}

const NameSet& projectFileExtensions() {
    static const NameSet set = splitWords(
        "aep aepx prproj drp fcpxml logicx sesx rpp als flp blend c4d psd psb ai indd sketch fig "
        "resolve");
    return set;
}

const NameSet& projectExtensions() {
    static const NameSet set = {"aep",    "prproj",    "drp",    "dra",
                                "fcpxml", "fcpbundle", "logicx", "xcodeproj"};
    return set;
}

const NameSet& protectedNames() {
    static const NameSet set = {"Codex",
                                "Library",
                                "Applications",
                                "System",
                                "node_modules",
                                "vendor",
                                "Pods",
                                "DerivedData",
                                "Blackmagic Design",
                                "Neat Video v6 for Resolve"};
    return set;
}

const std::array<std::string_view, 5>& projectMarkerNames() {
    static constexpr std::array<std::string_view, 5> names = {
        ".git", "package.json", "Package.swift", "Cargo.toml", "pyproject.toml"};
    return names;
}

const NameSet& packageExtensions() {
    static const NameSet set = splitWords(
        "app bundle framework plugin kext appex xpc photoslibrary fcpbundle logicx rtfd xcodeproj "
        "xcworkspace playground musiclibrary imovielibrary");
    return set;
}

std::string_view categoryName(std::string_view name) {
    for (std::string_view known : categoryNames())
        if (known == name)
            return known;
    return {};
}

}  // namespace quorrin::Engine
