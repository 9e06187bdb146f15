// Sha256: an incremental SHA-256 through libcrypto, which can be copied part-way.
#pragma once

#include "engine/content_digest.h"

#include <cstddef>
#include <memory>

struct evp_md_ctx_st;

namespace quorrin::Engine {

class Sha256 {
public:
    Sha256();
    // A copy goes on from where the original is: two contents that share a beginning are hashed
    // over that beginning once.
    Sha256(const Sha256& other);
    Sha256& operator=(const Sha256&) = delete;
    Sha256(Sha256&&) noexcept = default;
    Sha256& operator=(Sha256&&) noexcept = default;
    ~Sha256() = default;

    void update(const std::byte* data, std::size_t size);
    // The digest of everything added; the hash is not to be updated afterwards.
    ContentDigest value();

private:
    struct Release {
        void operator()(evp_md_ctx_st* context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Release> context_;
};

}  // namespace quorrin::Engine
