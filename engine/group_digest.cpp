// groupDigests: strands of files with equal content so far, each hashed once, split where the
// content parts.
#include "engine/group_digest.h"

#include "engine/read_buffer.h"
#include "engine/sha256.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <span>
#include <stdexcept>

namespace quorrin::Engine {
namespace {

using platform::Error;
using platform::Result;

// Each file's chunk: the buffer shared out among the files, at most a full digest's chunk each
// and at least a sample block, in whole sample blocks.
std::size_t chunkSize(std::size_t files) {
    const std::size_t share = readBufferSize / std::max<std::size_t>(files, 1);
    return std::clamp(share / std::size_t(sampleBlockSize) * std::size_t(sampleBlockSize),
                      std::size_t(sampleBlockSize), fullDigestChunkSize);
}

struct File {
    std::optional<platform::Fd> fd;  // empty once the file is finished or has failed
    std::span<std::byte> chunk;
    std::size_t length = 0;  // of the chunk read last
};

// Files whose contents were equal up to the last chunk read, and the hash of that content. The
// first file's chunk is the one hashed; the others were found equal to it.
struct Strand {
    Sha256 sha;
    std::vector<std::size_t> files;
};

// Fills the file's chunk from its current position, up to its end; the count read.
Result<std::size_t> fill(platform::Platform& platform, File& file) {
    std::size_t got = 0;
    while (got < file.chunk.size()) {
        auto n = platform.read(*file.fd, file.chunk.subspan(got));
        if (!n)
            return n.error();
        if (*n == 0)
            break;
        got += *n;
    }
    return got;
}

bool sameChunk(const File& a, const File& b) {
    return a.length == b.length && std::memcmp(a.chunk.data(), b.chunk.data(), a.length) == 0;
}

}  // namespace

std::vector<Result<ContentDigest>> groupDigests(const std::vector<std::string>& paths,
                                                platform::Platform& platform,
                                                const BytesRead& bytesRead,
                                                const StopRequest& stop) {
    if (paths.size() > groupDigestWidth)
        throw std::logic_error("too many files to read side by side");
    std::vector<std::optional<Result<ContentDigest>>> results(paths.size());
    std::vector<File> files(paths.size());
    const std::size_t chunk = chunkSize(paths.size());
    std::span<std::byte> buffer = readBuffer(chunk * paths.size());
    std::vector<Strand> strands(1);
    std::vector<std::size_t> alone;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        files[i].chunk = buffer.subspan(i * chunk, chunk);
        auto fd = platform.openForReading(paths[i]);
        if (!fd) {
            if (fd.error().isErrno(EMFILE) || fd.error().isErrno(ENFILE))
                alone.push_back(i);
            else
                results[i].emplace(fd.error());
            continue;
        }
        files[i].fd.emplace(std::move(*fd));
        strands.front().files.push_back(i);
    }

    while (!strands.empty()) {
        if (stop.requested())
            break;
        std::vector<Strand> next;
        for (Strand& strand : strands) {
            // This chunk of every file of the strand; a file that cannot be read drops out.
            std::vector<std::size_t> read;
            for (std::size_t i : strand.files) {
                auto n = fill(platform, files[i]);
                if (!n) {
                    results[i].emplace(n.error());
                    files[i].fd.reset();
                    continue;
                }
                files[i].length = *n;
                if (bytesRead && *n > 0)
                    bytesRead(*n);
                read.push_back(i);
            }
            // Split by this chunk: the files equal to the first stay together, and each other
            // content makes a strand of its own; every part goes on from the strand's hash as it
            // stood before this chunk (the last takes it, the others a copy).
            std::vector<std::vector<std::size_t>> parts;
            while (!read.empty()) {
                const File& leader = files[read.front()];
                auto parted = std::stable_partition(read.begin(), read.end(), [&](std::size_t i) {
                    return sameChunk(files[i], leader);
                });
                parts.emplace_back(read.begin(), parted);
                read.erase(read.begin(), parted);
            }
            for (std::size_t p = 0; p < parts.size(); ++p) {
                Strand part{
                    .sha = p + 1 < parts.size() ? Sha256(strand.sha) : std::move(strand.sha),
                    .files = std::move(parts[p])};
                const File& leader = files[part.files.front()];
                if (leader.length == 0) {
                    // The end of them all: this is their content's digest.
                    const ContentDigest value = part.sha.value();
                    for (std::size_t i : part.files) {
                        results[i].emplace(value);
                        files[i].fd.reset();
                    }
                    continue;
                }
                part.sha.update(leader.chunk.data(), leader.length);
                next.push_back(std::move(part));
            }
        }
        strands = std::move(next);
    }

    files.clear();  // closes every descriptor still open
    for (std::size_t i : alone)
        results[i].emplace(digest(paths[i], platform, bytesRead, stop));

    std::vector<Result<ContentDigest>> digests;
    digests.reserve(paths.size());
    for (auto& result : results)
        digests.push_back(result ? std::move(*result) : Error::fromErrno(ECANCELED));
    return digests;
}

}  // namespace quorrin::Engine
