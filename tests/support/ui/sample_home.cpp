// Writes the sample home of the interface tests and the screenshots.
#include "tests/support/ui/sample_home.h"

#include "tests/support/sample_files.h"

#include <chrono>
#include <string>

namespace quorrin::testing {
namespace {

// `size` bytes of text that differ from file to file (so no two files are duplicates by chance).
std::string filler(const std::string& seed, std::size_t size) {
    std::string text;
    text.reserve(size);
    std::uint32_t state = 2166136261u;
    for (char c : seed)
        state = (state ^ std::uint8_t(c)) * 16777619u;
    while (text.size() < size) {
        state = state * 1664525u + 1013904223u;
        text.push_back(char('a' + (state >> 24) % 26));
    }
    return text;
}

void writeAged(const TempHome& home, const std::string& relative, std::size_t size, int ageDays) {
    const std::string path = home.writeFile(relative, filler(relative, size));
    setModified(path, daysAgo(ageDays));
}

}  // namespace

std::int64_t daysAgo(int days) {
    const auto now = std::chrono::system_clock::now();
    return std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count() -
           std::int64_t(days) * 86400;
}

void writeSampleHome(const TempHome& home) {
    // Documents: invoices and taxes in folders of their own, loose papers, an empty draft.
    const std::string pdf = minimalPdf();
    for (const char* name :
         {"Documents/Invoices/Invoice 2024-03.pdf", "Documents/Invoices/Invoice 2024-11.pdf",
          "Documents/Taxes/Tax return 2023.pdf"}) {
        const std::string path = home.writeFile(name, pdf + "% " + name + "\n");
        setModified(path, daysAgo(420));
    }
    writeAged(home, "Documents/Quarterly report Q2.docx", 184'000, 160);
    writeAged(home, "Documents/Budget 2025.xlsx", 46'500, 35);
    writeAged(home, "Documents/Meeting notes.txt", 2'300, 3);
    writeAged(home, "Documents/Reading list.txt", 880, 900);
    home.writeFile("Documents/Empty draft.txt", "");

    // Desktop: a photo, a screenshot, a damaged image, a song and a clip.
    writeImage(home.path("Desktop/Holiday photo.jpg"), 640, 480);
    setModified(home.path("Desktop/Holiday photo.jpg"), daysAgo(300));
    writeImage(home.path("Desktop/Screenshot 2025-05-12.png"), 320, 200);
    home.writeFile("Desktop/Scan of receipt.jpg", "this is not really a picture");
    writeAged(home, "Desktop/Morning song.mp3", 3'400'000, 60);
    writeAged(home, "Desktop/Birthday clip.mp4", 12'800'000, 500);

    // Downloads: installers and archives, old and new, and second copies of a photo and an
    // invoice.
    home.writeFile("Downloads/Holiday photo.jpg", readFile(home.path("Desktop/Holiday photo.jpg")));
    setModified(home.path("Downloads/Holiday photo.jpg"), daysAgo(40));
    writeAged(home, "Downloads/design-tool-setup.dmg", 2'450'000, 200);
    writeAged(home, "Downloads/install.sh", 4'100, 120);
    writeAged(home, "Downloads/photos-2023.zip", 5'600'000, 380);
    const std::string tickets = home.writeFile("Downloads/Flight tickets.pdf",
                                               pdf + "%" + filler("tickets", 72'000) + "\n");
    setModified(tickets, daysAgo(2));
    home.writeFile("Downloads/Invoice 2024-03 (1).pdf",
                   readFile(home.path("Documents/Invoices/Invoice 2024-03.pdf")));
    setModified(home.path("Downloads/Invoice 2024-03 (1).pdf"), daysAgo(95));
    writeAged(home, "Downloads/User manual.pdf", 1'250'000, 75);
}

}  // namespace quorrin::testing
