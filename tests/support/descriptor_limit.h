// DescriptorLimit: the process's descriptor limit lowered for one test, restored afterwards.
#pragma once

#include <filesystem>
#include <iterator>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace quorrin::testing {

// While it lives, the process may open only `spare` descriptors beyond those it holds now.
class DescriptorLimit {
public:
    explicit DescriptorLimit(long spare) {
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &saved_), 0);
        const auto open = std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                        std::filesystem::directory_iterator());
        rlimit tight = saved_;
        tight.rlim_cur = static_cast<rlim_t>(open + spare);
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &saved_); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

private:
    rlimit saved_{};
};

}  // namespace quorrin::testing
