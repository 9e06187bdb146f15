// The texts that name the desktop's own facilities (the file manager, the Trash, usage history,
// file permissions), one table per platform, chosen when the program is built.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace quorrin::store {

struct PlatformTexts {
    // The Overview page's subtitle.
    std::string_view overviewSubtitle;
    // The line under "LOCAL • PRIVATE" at the foot of the sidebar.
    std::string_view sidebarFooter;
    // A file row's button and context-menu entry that show the file in the file manager.
    std::string_view showInFileManager;
    // The message of the "Move selected files to Trash?" confirmation.
    std::string_view trashConfirmation;
    // After the restored count, the last words of the undo summary.
    std::string_view undoSummaryTail;
    // The note under the find-older controls.
    std::string_view findOlderNote;
    // The settings page's note about folders that cannot be read.
    std::string_view accessNote;
    // The settings page's note about what each scan reads.
    std::string_view scanNote;
};

inline constexpr PlatformTexts macTexts{
    .overviewSubtitle = "A calmer Mac begins with a cleaner space.",
    .sidebarFooter = "Files stay on your Mac.",
    .showInFileManager = "Show in Finder",
    .trashConfirmation =
        "Kept files are protected. You can restore trashed files from Finder. "
        "Duplicate originals are checked again before removal.",
    .undoSummaryTail = " arranged files. Trashed files can be restored from Finder Trash.",
    .findOlderNote =
        "Dates come from macOS file metadata. Copying or restoring a file can change its Created "
        "date; use Last modified date for when you last edited it. Files without a Created date "
        "are excluded in Created mode. Personal project folders are searched; app/system data and "
        "packages are skipped. This view does not move or delete files.",
    .accessNote =
        "If macOS blocks access, allow Documents, Downloads and Desktop in System "
        "Settings → Privacy & Security → Files and Folders. Protected projects and app "
        "data are skipped. Cloud-only files may download during content comparison.",
    .scanNote =
        "Quick scan reads names, sizes and dates without opening file content. Use Duplicates → "
        "Check duplicates and File health → Check health separately. Start still compares full "
        "content when automatic duplicate clearing is ON; switch it OFF for faster arrangement. "
        "Downloads → Check usage reads Spotlight history and can take longer. Local image/PDF "
        "health checks may open cloud files.",
};

inline constexpr PlatformTexts linuxTexts{
    .overviewSubtitle = "A calmer computer begins with a cleaner space.",
    .sidebarFooter = "Files stay on this computer.",
    .showInFileManager = "Show in Folder",
    .trashConfirmation =
        "Kept files are protected. You can restore trashed files from the Trash. "
        "Duplicate originals are checked again before removal.",
    .undoSummaryTail = " arranged files. Trashed files can be restored from the Trash.",
    .findOlderNote =
        "Dates come from the file system's metadata. Copying or restoring a file can change its "
        "Created date; use Last modified date for when you last edited it. Files without a "
        "Created date are excluded in Created mode. Personal project folders are searched; "
        "app/system data and packages are skipped. This view does not move or delete files.",
    .accessNote =
        "If a folder cannot be read, check its permissions; an app installed in a sandbox needs "
        "access to your home folder. Protected projects and app data are skipped. Files in "
        "network or cloud-synced folders may be downloaded during content comparison.",
    .scanNote =
        "Quick scan reads names, sizes and dates without opening file content. Use Duplicates → "
        "Check duplicates and File health → Check health separately. Start still compares full "
        "content when automatic duplicate clearing is ON; switch it OFF for faster arrangement. "
        "Downloads → Check usage reads your desktop's recently-used history and can take longer. "
        "Local image/PDF health checks may open cloud files.",
};

// The table of the platform this program was built for.
#if defined(__APPLE__)
inline constexpr const PlatformTexts& platformTexts = macTexts;
#else
inline constexpr const PlatformTexts& platformTexts = linuxTexts;
#endif

// Every text of a table, for checks that go over all of them.
constexpr std::array<std::string_view, 8> allTexts(const PlatformTexts& texts) {
    return {texts.overviewSubtitle,  texts.sidebarFooter,   texts.showInFileManager,
            texts.trashConfirmation, texts.undoSummaryTail, texts.findOlderNote,
            texts.accessNote,        texts.scanNote};
}

// The closing line of an undo: "Restored " + the count in plain decimal + the table's tail.
inline std::string undoSummary(std::size_t restored) {
    return "Restored " + std::to_string(restored) + std::string(platformTexts.undoSummaryTail);
}

}  // namespace quorrin::store
