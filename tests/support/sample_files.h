// Sample images and PDF documents made at test time, whole or damaged, for the health checks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorrin::testing {

// Writes a noise image (the same pixels every time) through libvips; the extension of `path`
// chooses the format: jpg, jpeg, png, gif, tif, tiff, heic, heif, bmp or webp. `options` are
// libvips saver options such as "compression=lzw". Throws when libvips cannot write it.
void writeImage(const std::string& path, int width, int height, const std::string& options = "");
// An uncompressed RGB TIFF whose directory comes before its pixel data (libvips writes it after).
void writeTiffWithLeadingDirectory(const std::string& path, int width, int height);
// The class name of the libvips loader that recognises the file, or "" when none does.
std::string vipsLoaderFor(const std::string& path);

// A valid one-page PDF document with an exact cross-reference table.
std::string minimalPdf();
// Writes an AES-256 encrypted copy of the PDF `from` to `to` with qpdf and returns `to`; an empty
// user password restricts the document without locking it. Throws when qpdf fails.
std::string encryptPdf(const std::string& from, const std::string& to,
                       const std::string& userPassword);

// Keeps the first `size` bytes of a file.
void truncateTo(const std::string& path, std::size_t size);
// Replaces `count` bytes at `offset` with `value`.
void overwriteBytes(const std::string& path, std::size_t offset, std::size_t count,
                    unsigned char value);
// The offset of the first occurrence of `pattern` in the file; throws when there is none.
std::size_t offsetOf(const std::string& path, std::string_view pattern);

}  // namespace quorrin::testing
