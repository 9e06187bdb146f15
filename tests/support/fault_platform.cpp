// Forwards every primitive to the Linux platform unless the test's hook fails it.
#include "tests/support/fault_platform.h"

namespace quorrin::testing {

std::optional<Error> FaultPlatform::check(const std::string& operation,
                                          const std::string& argument) {
    // The duplicate analysis reads on several threads at once.
    std::lock_guard lock(mutex_);
    ++calls[operation];
    if (fault)
        return fault(operation, argument);
    return std::nullopt;
}

FaultPlatform::Hook FaultPlatform::failing(std::string operation, std::string suffix,
                                           int errnoValue) {
    return [=](const std::string& op, const std::string& argument) -> std::optional<Error> {
        if (op == operation && argument.ends_with(suffix))
            return Error::fromErrno(errnoValue);
        return std::nullopt;
    };
}

FaultPlatform::Hook FaultPlatform::failingCall(std::string operation, int index, int errnoValue,
                                               std::shared_ptr<std::optional<std::string>> fired) {
    auto seen = std::make_shared<int>(0);
    return [=](const std::string& op, const std::string& argument) -> std::optional<Error> {
        if (op != operation || ++*seen != index)
            return std::nullopt;
        if (fired)
            *fired = argument;
        return Error::fromErrno(errnoValue);
    };
}

const std::vector<std::string>& FaultPlatform::operations() {
    static const std::vector<std::string> names = {"openDirectory",
                                                   "openDirectoryAt",
                                                   "listDirectory",
                                                   "statAt",
                                                   "stat",
                                                   "resolve",
                                                   "openForReading",
                                                   "read",
                                                   "readAt",
                                                   "makeDirectory",
                                                   "moveNoReplace",
                                                   "moveNoReplaceInto",
                                                   "moveNoReplaceOutOf",
                                                   "createExclusive",
                                                   "write",
                                                   "sync",
                                                   "removeFile",
                                                   "replaceFile",
                                                   "readFile",
                                                   "lockFile"};
    return names;
}

#define QUORRIN_FAULT_CHECK(operation, argument) \
    if (auto error = check(operation, argument)) \
    return *error

Result<Fd> FaultPlatform::openDirectory(const std::string& path) {
    QUORRIN_FAULT_CHECK("openDirectory", path);
    return LinuxPlatform::openDirectory(path);
}
Result<Fd> FaultPlatform::openDirectoryAt(const Fd& parent, const std::string& name) {
    QUORRIN_FAULT_CHECK("openDirectoryAt", name);
    return LinuxPlatform::openDirectoryAt(parent, name);
}
Result<std::vector<std::string>> FaultPlatform::readDirectory(const Fd& directory) {
    QUORRIN_FAULT_CHECK("readDirectory", "");
    return LinuxPlatform::readDirectory(directory);
}
Result<std::vector<platform::DirectoryEntry>> FaultPlatform::listDirectory(const Fd& directory) {
    QUORRIN_FAULT_CHECK("listDirectory", "");
    return LinuxPlatform::listDirectory(directory);
}
Result<FileInfo> FaultPlatform::statAt(const Fd& directory, const std::string& name,
                                       bool followLinks) {
    QUORRIN_FAULT_CHECK("statAt", name);
    return LinuxPlatform::statAt(directory, name, followLinks);
}
Result<FileInfo> FaultPlatform::stat(const std::string& path, bool followLinks) {
    QUORRIN_FAULT_CHECK("stat", path);
    return LinuxPlatform::stat(path, followLinks);
}
Result<std::string> FaultPlatform::resolve(const std::string& path) {
    QUORRIN_FAULT_CHECK("resolve", path);
    return LinuxPlatform::resolve(path);
}
Result<Fd> FaultPlatform::openForReading(const std::string& path) {
    QUORRIN_FAULT_CHECK("openForReading", path);
    return LinuxPlatform::openForReading(path);
}
Result<std::size_t> FaultPlatform::read(const Fd& file, std::span<std::byte> into) {
    QUORRIN_FAULT_CHECK("read", "");
    return LinuxPlatform::read(file, into);
}
Result<std::size_t> FaultPlatform::readAt(const Fd& file, std::span<std::byte> into,
                                          std::int64_t offset) {
    QUORRIN_FAULT_CHECK("readAt", "");
    return LinuxPlatform::readAt(file, into, offset);
}
Status FaultPlatform::makeDirectory(const std::string& path, std::uint32_t mode) {
    QUORRIN_FAULT_CHECK("makeDirectory", path);
    return LinuxPlatform::makeDirectory(path, mode);
}
Status FaultPlatform::moveNoReplace(const std::string& from, const std::string& to) {
    QUORRIN_FAULT_CHECK("moveNoReplace", to);
    return LinuxPlatform::moveNoReplace(from, to);
}
Status FaultPlatform::moveNoReplaceInto(const std::string& from, const Fd& folder,
                                        const std::string& name) {
    QUORRIN_FAULT_CHECK("moveNoReplaceInto", name);
    return LinuxPlatform::moveNoReplaceInto(from, folder, name);
}
Status FaultPlatform::moveNoReplaceOutOf(const Fd& folder, const std::string& name,
                                         const std::string& to) {
    QUORRIN_FAULT_CHECK("moveNoReplaceOutOf", to);
    return LinuxPlatform::moveNoReplaceOutOf(folder, name, to);
}
Result<Fd> FaultPlatform::createExclusive(const std::string& path, std::uint32_t mode) {
    QUORRIN_FAULT_CHECK("createExclusive", path);
    return LinuxPlatform::createExclusive(path, mode);
}
Status FaultPlatform::write(const Fd& file, std::span<const std::byte> bytes) {
    QUORRIN_FAULT_CHECK("write", "");
    return LinuxPlatform::write(file, bytes);
}
Status FaultPlatform::sync(const Fd& file) {
    QUORRIN_FAULT_CHECK("sync", "");
    return LinuxPlatform::sync(file);
}
Status FaultPlatform::removeFile(const std::string& path) {
    QUORRIN_FAULT_CHECK("removeFile", path);
    return LinuxPlatform::removeFile(path);
}
Status FaultPlatform::replaceFile(const std::string& from, const std::string& to) {
    QUORRIN_FAULT_CHECK("replaceFile", to);
    return LinuxPlatform::replaceFile(from, to);
}
Result<std::string> FaultPlatform::readFile(const std::string& path, std::size_t maxBytes) {
    QUORRIN_FAULT_CHECK("readFile", path);
    return LinuxPlatform::readFile(path, maxBytes);
}
Result<Fd> FaultPlatform::lockFile(const std::string& path, bool exclusive,
                                   std::chrono::milliseconds wait) {
    QUORRIN_FAULT_CHECK("lockFile", path);
    return LinuxPlatform::lockFile(path, exclusive, wait);
}
void FaultPlatform::count(const std::string& operation) {
    std::lock_guard lock(mutex_);
    ++calls[operation];
}

platform::UsageDates FaultPlatform::readUsageDates() {
    count("readUsageDates");
    return usageDates ? *usageDates : LinuxPlatform::readUsageDates();
}

platform::ImageProbe FaultPlatform::probeImage(const std::string& path) {
    count("probeImage");
    return LinuxPlatform::probeImage(path);
}

bool FaultPlatform::pdfOpens(const std::string& path) {
    count("pdfOpens");
    return LinuxPlatform::pdfOpens(path);
}

Result<std::string> FaultPlatform::decoderVersions() {
    count("decoderVersions");
    return decoderVersionsAnswer ? *decoderVersionsAnswer : LinuxPlatform::decoderVersions();
}

platform::Instant FaultPlatform::now() {
    return fixedNow ? *fixedNow : LinuxPlatform::now();
}

#undef QUORRIN_FAULT_CHECK

}  // namespace quorrin::testing
