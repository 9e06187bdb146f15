// LinuxPlatform: the Platform on Linux, through system calls, GLib, libvips and poppler.
#pragma once

#include "platform/platform.h"

namespace quorrin::platform {

class LinuxPlatform : public Platform {
public:
    Result<Fd> openDirectory(const std::string& path) override;
    Result<Fd> openDirectoryAt(const Fd& parent, const std::string& name) override;
    Result<std::vector<std::string>> readDirectory(const Fd& directory) override;
    Result<std::vector<DirectoryEntry>> listDirectory(const Fd& directory) override;
    Result<FileInfo> statAt(const Fd& directory, const std::string& name,
                            bool followLinks) override;
    Result<FileInfo> stat(const std::string& path, bool followLinks) override;
    Result<std::string> resolve(const std::string& path) override;
    Result<Fd> openForReading(const std::string& path) override;
    Result<std::size_t> read(const Fd& file, std::span<std::byte> into) override;
    Result<std::size_t> readAt(const Fd& file, std::span<std::byte> into,
                               std::int64_t offset) override;
    Status makeDirectory(const std::string& path, std::uint32_t mode) override;
    Status moveNoReplace(const std::string& from, const std::string& to) override;
    Status moveNoReplaceInto(const std::string& from, const Fd& folder,
                             const std::string& name) override;
    Status moveNoReplaceOutOf(const Fd& folder, const std::string& name,
                              const std::string& to) override;
    Result<Fd> createExclusive(const std::string& path, std::uint32_t mode) override;
    Status write(const Fd& file, std::span<const std::byte> bytes) override;
    Status sync(const Fd& file) override;
    Status removeFile(const std::string& path) override;
    Status replaceFile(const std::string& from, const std::string& to) override;
    Result<std::string> readFile(const std::string& path, std::size_t maxBytes) override;
    Result<Fd> lockFile(const std::string& path, bool exclusive,
                        std::chrono::milliseconds wait) override;
    std::optional<std::string> environment(const std::string& name) override;
    std::string homeFolder() override;
    std::uint32_t userId() override;
    Instant now() override;
    UsageDates readUsageDates() override;
    ImageProbe probeImage(const std::string& path) override;
    bool pdfOpens(const std::string& path) override;
    Result<std::string> decoderVersions() override;
};

}  // namespace quorrin::platform
