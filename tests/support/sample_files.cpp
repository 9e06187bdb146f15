// Sample images (through libvips) and PDF documents (by hand) for the health-check tests.
#include "tests/support/sample_files.h"

#include "tests/support/stderr_capture.h"
#include "tests/support/temp_home.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

#include <unistd.h>
#include <vips/vips.h>

// The HEVC encoder (libx265) that libvips' HEIF saver drives keeps two blocks it never frees;
// LeakSanitizer would fail every test that writes a HEIC sample. Read by the sanitizer runtime,
// unused in other builds.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libx265.so\n";
}

namespace quorrin::testing {
namespace {

struct ImageRelease {
    void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, ImageRelease>;

void startVips() {
    static const bool started = VIPS_INIT("quorrin-tests") == 0;
    if (!started)
        throw std::runtime_error("libvips does not start");
}

std::string vipsError(const std::string& what) {
    std::string text = what + ": " + vips_error_buffer();
    vips_error_clear();
    return text;
}

// One band of seeded noise as 8-bit samples.
Image noiseBand(int width, int height, int seed) {
    VipsImage* noise = nullptr;
    if (vips_gaussnoise(&noise, width, height, "seed", seed, "sigma", 60.0, nullptr) != 0)
        throw std::runtime_error(vipsError("gaussnoise"));
    Image owned(noise);
    VipsImage* bytes = nullptr;
    if (vips_cast_uchar(owned.get(), &bytes, nullptr) != 0)
        throw std::runtime_error(vipsError("cast"));
    return Image(bytes);
}

void putLittleEndian(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
}

}  // namespace

void writeImage(const std::string& path, int width, int height, const std::string& options) {
    startVips();
    Image red = noiseBand(width, height, 1);
    Image green = noiseBand(width, height, 2);
    Image blue = noiseBand(width, height, 3);
    VipsImage* bands[] = {red.get(), green.get(), blue.get()};
    VipsImage* joined = nullptr;
    if (vips_bandjoin(bands, &joined, 3, nullptr) != 0)
        throw std::runtime_error(vipsError("bandjoin"));
    Image rgb(joined);
    std::string target = options.empty() ? path : path + "[" + options + "]";
    // The HEVC encoder announces itself on stderr; that is no part of any test.
    StderrCapture quiet;
    if (vips_image_write_to_file(rgb.get(), target.c_str(), nullptr) != 0)
        throw std::runtime_error(vipsError("write " + path));
}

void writeTiffWithLeadingDirectory(const std::string& path, int width, int height) {
    constexpr std::uint32_t entries = 10;
    constexpr std::uint32_t directoryOffset = 8;
    constexpr std::uint32_t bitsOffset = directoryOffset + 2 + entries * 12 + 4;
    constexpr std::uint32_t dataOffset = bitsOffset + 6;
    const std::uint32_t dataSize = static_cast<std::uint32_t>(width * height * 3);

    std::string out = "II*";
    out.push_back('\0');
    putLittleEndian(out, directoryOffset, 4);
    putLittleEndian(out, entries, 2);
    auto entry = [&](std::uint32_t tag, std::uint32_t type, std::uint32_t count,
                     std::uint32_t value) {
        putLittleEndian(out, tag, 2);
        putLittleEndian(out, type, 2);
        putLittleEndian(out, count, 4);
        putLittleEndian(out, value, 4);
    };
    constexpr std::uint32_t shortType = 3, longType = 4;
    entry(256, shortType, 1, static_cast<std::uint32_t>(width));   // ImageWidth
    entry(257, shortType, 1, static_cast<std::uint32_t>(height));  // ImageLength
    entry(258, shortType, 3, bitsOffset);                          // BitsPerSample 8,8,8
    entry(259, shortType, 1, 1);                                   // Compression: none
    entry(262, shortType, 1, 2);                                   // Photometric: RGB
    entry(273, longType, 1, dataOffset);                           // StripOffsets
    entry(277, shortType, 1, 3);                                   // SamplesPerPixel
    entry(278, shortType, 1, static_cast<std::uint32_t>(height));  // RowsPerStrip
    entry(279, longType, 1, dataSize);                             // StripByteCounts
    entry(284, shortType, 1, 1);                                   // PlanarConfiguration
    putLittleEndian(out, 0, 4);                                    // no further directory
    for (int i = 0; i < 3; ++i)
        putLittleEndian(out, 8, 2);
    for (std::uint32_t i = 0; i < dataSize; ++i)
        out.push_back(static_cast<char>((i * 2654435761u) >> 24));
    writeFileAt(path, out);
}

std::string vipsLoaderFor(const std::string& path) {
    startVips();
    const char* loader = vips_foreign_find_load(path.c_str());
    vips_error_clear();
    return loader ? loader : "";
}

std::string minimalPdf() {
    const std::string content = "BT /F1 24 Tf 72 720 Td (Hello) Tj ET\n";
    const std::vector<std::string> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R "
        "/Resources << /Font << /F1 5 0 R >> >> >>",
        "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "endstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
    };
    std::string pdf = "%PDF-1.4\n";
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        offsets.push_back(pdf.size());
        pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    std::size_t xref = pdf.size();
    pdf += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (std::size_t offset : offsets) {
        char line[21];
        std::snprintf(line, sizeof line, "%010zu 00000 n \n", offset);
        pdf += line;
    }
    pdf += "trailer\n<< /Size " + std::to_string(objects.size() + 1) +
           " /Root 1 0 R >>\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n";
    return pdf;
}

std::string encryptPdf(const std::string& from, const std::string& to,
                       const std::string& userPassword) {
    int status =
        runProgram("qpdf", {"--encrypt", userPassword, "owner-secret", "256", "--", from, to});
    if (status != 0)
        throw std::runtime_error("qpdf --encrypt failed with status " + std::to_string(status));
    return to;
}

void truncateTo(const std::string& path, std::size_t size) {
    if (::truncate(path.c_str(), static_cast<off_t>(size)) != 0)
        throw std::runtime_error("cannot truncate " + path);
}

void overwriteBytes(const std::string& path, std::size_t offset, std::size_t count,
                    unsigned char value) {
    std::string content = readFile(path);
    if (offset + count > content.size())
        throw std::runtime_error("overwrite beyond " + path);
    for (std::size_t i = 0; i < count; ++i)
        content[offset + i] = static_cast<char>(value);
    writeFileAt(path, content);
}

std::size_t offsetOf(const std::string& path, std::string_view pattern) {
    std::size_t at = readFile(path).find(pattern);
    if (at == std::string::npos)
        throw std::runtime_error("pattern not found in " + path);
    return at;
}

}  // namespace quorrin::testing
