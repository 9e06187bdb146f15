// readBuffer: the one buffer each thread reads files into.
#pragma once

#include <cstddef>
#include <span>

namespace quorrin::Engine {

// What readBuffer holds: a full digest's chunk, or the chunks of several files read side by side.
inline constexpr std::size_t readBufferSize = 2'097'152;

// The first `size` bytes (at most readBufferSize) of this thread's buffer. Allocating (and
// zeroing) a fresh buffer for every file cost more than hashing a small file. The buffer starts
// on a page boundary: the kernel copies from the page cache into a page-aligned buffer about four
// times as fast as into one that malloc() leaves 16 bytes past a boundary.
std::span<std::byte> readBuffer(std::size_t size);

}  // namespace quorrin::Engine
