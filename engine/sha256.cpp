// Sha256 over OpenSSL's EVP interface.
#include "engine/sha256.h"

#include <new>

#include <openssl/evp.h>

namespace quorrin::Engine {
namespace {

// SHA-256 looked up in OpenSSL's providers once, not on every digest.
const EVP_MD* sha256Method() {
    static const EVP_MD* method = [] {
        const EVP_MD* fetched = EVP_MD_fetch(nullptr, "SHA256", nullptr);
        return fetched != nullptr ? fetched : EVP_sha256();
    }();
    return method;
}

}  // namespace

void Sha256::Release::operator()(evp_md_ctx_st* context) const {
    EVP_MD_CTX_free(context);
}

Sha256::Sha256() : context_(EVP_MD_CTX_new()) {
    if (!context_ || EVP_DigestInit_ex(context_.get(), sha256Method(), nullptr) != 1)
        throw std::bad_alloc();
}

Sha256::Sha256(const Sha256& other) : context_(EVP_MD_CTX_new()) {
    if (!context_ || EVP_MD_CTX_copy_ex(context_.get(), other.context_.get()) != 1)
        throw std::bad_alloc();
}

void Sha256::update(const std::byte* data, std::size_t size) {
    EVP_DigestUpdate(context_.get(), data, size);
}

ContentDigest Sha256::value() {
    ContentDigest result;
    unsigned int length = 0;
    EVP_DigestFinal_ex(context_.get(), result.bytes.data(), &length);
    return result;
}

}  // namespace quorrin::Engine
