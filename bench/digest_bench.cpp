// Content digests: full SHA-256 and sample digests of files in the page cache, against OpenSSL's
// SHA-256 over memory.
#include "engine/digest.h"
#include "engine/group_digest.h"

#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

namespace quorrin::bench {
namespace {

// A folder of files made once per process and removed at exit.
class Files {
public:
    Files() {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/quorrin-digest-XXXXXX";
        folder_ = ::mkdtemp(pattern.data()) ? pattern : std::string();
    }
    ~Files() {
        for (const std::string& path : made_)
            std::remove(path.c_str());
        if (!folder_.empty())
            std::remove(folder_.c_str());
    }
    // A file of `size` pseudo-random bytes, written once and then read from the page cache; files
    // of one size and another `copy` number hold the same bytes.
    const std::string& file(std::size_t size, int copy = 0) {
        std::string path =
            folder_ + "/" + std::to_string(size) + "-" + std::to_string(copy) + ".bin";
        for (const std::string& made : made_)
            if (made == path)
                return made;
        std::mt19937_64 random(size);
        std::vector<std::uint64_t> block(1 << 17);
        std::ofstream out(path, std::ios::binary);
        for (std::size_t written = 0; written < size;) {
            for (auto& word : block)
                word = random();
            std::size_t take = std::min(size - written, block.size() * sizeof(std::uint64_t));
            out.write(reinterpret_cast<const char*>(block.data()),
                      static_cast<std::streamsize>(take));
            written += take;
        }
        made_.push_back(path);
        return made_.back();
    }

private:
    std::string folder_;
    std::vector<std::string> made_;
};

Files& files() {
    static Files made;
    return made;
}

void fullDigest(benchmark::State& state) {
    const std::size_t size = static_cast<std::size_t>(state.range(0));
    const std::string& path = files().file(size);
    benchmark::DoNotOptimize(Engine::digest(path));  // into the page cache
    for (auto _ : state)
        benchmark::DoNotOptimize(Engine::digest(path));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
BENCHMARK(fullDigest)->Arg(4 << 10)->Arg(100 << 10)->Arg(64 << 20)->Unit(benchmark::kMicrosecond);

// A large file's sample: its first and last 64 KiB.
void sampleDigest(benchmark::State& state) {
    const std::size_t size = static_cast<std::size_t>(state.range(0));
    const std::string& path = files().file(size);
    benchmark::DoNotOptimize(Engine::sampleDigest(path, static_cast<std::int64_t>(size)));
    for (auto _ : state)
        benchmark::DoNotOptimize(Engine::sampleDigest(path, static_cast<std::int64_t>(size)));
    const std::int64_t hashed = std::min<std::int64_t>(static_cast<std::int64_t>(size), 128 << 10);
    state.SetBytesProcessed(state.iterations() * hashed);
}
BENCHMARK(sampleDigest)->Arg(4 << 10)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);

// Two copies read side by side, as a sample group's full digests are: one hashed, the other
// compared with it. Bytes counted for both files.
void copiesSideBySide(benchmark::State& state) {
    const std::size_t size = static_cast<std::size_t>(state.range(0));
    const std::vector<std::string> paths = {files().file(size, 0), files().file(size, 1)};
    benchmark::DoNotOptimize(Engine::groupDigests(paths));  // into the page cache
    for (auto _ : state)
        benchmark::DoNotOptimize(Engine::groupDigests(paths));
    state.SetBytesProcessed(state.iterations() * 2 * static_cast<std::int64_t>(size));
}
BENCHMARK(copiesSideBySide)->Arg(64 << 20)->Unit(benchmark::kMicrosecond);

// OpenSSL's SHA-256 over a buffer in memory, 1 MiB per update: the hashing speed alone, as
// `openssl speed -evp sha256` measures it.
void opensslSha256Memory(benchmark::State& state) {
    std::vector<unsigned char> buffer(1 << 20, 0x5A);
    unsigned char value[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    for (auto _ : state) {
        EVP_DigestInit_ex(context, EVP_sha256(), nullptr);
        EVP_DigestUpdate(context, buffer.data(), buffer.size());
        EVP_DigestFinal_ex(context, value, &length);
        benchmark::DoNotOptimize(value);
    }
    EVP_MD_CTX_free(context);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(buffer.size()));
}
BENCHMARK(opensslSha256Memory)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quorrin::bench
