// FaultPlatform: the real Linux platform, with a hook that can fail any primitive on demand.
#pragma once

#include "platform/linux_platform.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quorrin::testing {

using platform::Error;
using platform::Fd;
using platform::FileInfo;
using platform::Result;
using platform::Status;

class FaultPlatform : public platform::LinuxPlatform {
public:
    // Called before every primitive with its name ("statAt", "read", …) and its path or name
    // argument (empty for descriptor-only calls); an error returned is returned by the primitive
    // instead of running it.
    std::function<std::optional<Error>(const std::string& operation, const std::string& argument)>
        fault;
    // How often each primitive was called.
    std::map<std::string, int> calls;
    // When set, the clock reads this instant.
    std::optional<platform::Instant> fixedNow;
    // When set, replaces the recently-used list.
    std::optional<platform::UsageDates> usageDates;
    // When set, the decoders report these versions (or fail to load with this error).
    std::optional<Result<std::string>> decoderVersionsAnswer;

    Result<Fd> openDirectory(const std::string& path) override;
    Result<Fd> openDirectoryAt(const Fd& parent, const std::string& name) override;
    Result<std::vector<std::string>> readDirectory(const Fd& directory) override;
    Result<std::vector<platform::DirectoryEntry>> listDirectory(const Fd& directory) override;
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
    platform::UsageDates readUsageDates() override;
    platform::Instant now() override;
    // Counted in `calls` ("probeImage", "pdfOpens", "decoderVersions"); the hook cannot fail them.
    platform::ImageProbe probeImage(const std::string& path) override;
    bool pdfOpens(const std::string& path) override;
    Result<std::string> decoderVersions() override;

    using Hook = std::function<std::optional<Error>(const std::string& operation,
                                                    const std::string& argument)>;

    // A fault that fails `operation` with `errnoValue` whenever its argument ends with `suffix`.
    static Hook failing(std::string operation, std::string suffix, int errnoValue);

    // A fault that fails only the `index`-th call (1 for the first) of `operation`, counted from
    // when the hook is installed, with `errnoValue`. When given, `fired` receives the argument of
    // the failed call once it has happened.
    static Hook failingCall(std::string operation, int index, int errnoValue,
                            std::shared_ptr<std::optional<std::string>> fired = {});

    // The primitives a fault can fail, as the hook names them: every reading and changing
    // operation on files, folders and locks.
    static const std::vector<std::string>& operations();

private:
    // Primitives may be called from several threads; the hook and the counts are used under it.
    std::recursive_mutex mutex_;
    std::optional<Error> check(const std::string& operation, const std::string& argument);
    // Counts a call the hook is not asked about.
    void count(const std::string& operation);
};

}  // namespace quorrin::testing
