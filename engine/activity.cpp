// Makes activity lines: a fresh random identity and the clock's moment for each.
#include "engine/activity.h"

#include <array>
#include <cstdint>
#include <random>

namespace quorrin::Engine {
namespace {

std::string randomUuid() {
    thread_local std::mt19937_64 generator{[] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }()};
    std::array<std::uint8_t, 16> bytes{};
    for (std::size_t i = 0; i < bytes.size(); i += 8) {
        std::uint64_t word = generator();
        for (std::size_t k = 0; k < 8; ++k)
            bytes[i + k] = static_cast<std::uint8_t>(word >> (8 * k));
    }
    bytes[6] = (bytes[6] & 0x0F) | 0x40;  // version 4
    bytes[8] = (bytes[8] & 0x3F) | 0x80;  // RFC 4122 variant
    static constexpr char hex[] = "0123456789abcdef";
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text.push_back('-');
        text.push_back(hex[bytes[i] >> 4]);
        text.push_back(hex[bytes[i] & 0x0F]);
    }
    return text;
}

}  // namespace

Activity::Activity(std::string text)
    : id_(randomUuid()),
      date_(
          std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now())),
      text_(std::move(text)) {}

}  // namespace quorrin::Engine
