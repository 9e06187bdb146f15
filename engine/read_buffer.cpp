// readBuffer: allocated on a thread's first read, released when the thread ends.
#include "engine/read_buffer.h"

#include <memory>
#include <new>
#include <stdexcept>

namespace quorrin::Engine {
namespace {

constexpr std::align_val_t pageAlignment{4096};

struct AlignedRelease {
    void operator()(std::byte* bytes) const { ::operator delete[](bytes, pageAlignment); }
};

}  // namespace

std::span<std::byte> readBuffer(std::size_t size) {
    if (size > readBufferSize)
        throw std::logic_error("read buffer asked for more than it holds");
    thread_local std::unique_ptr<std::byte[], AlignedRelease> buffer(
        static_cast<std::byte*>(::operator new[](readBufferSize, pageAlignment)));
    return {buffer.get(), size};
}

}  // namespace quorrin::Engine
