// StderrCapture: collects everything written to file descriptor 2 while it is alive.
#pragma once

#include <string>

namespace quorrin::testing {

// Points descriptor 2 at an anonymous file, so that output of libraries that write to it directly
// (not through std::cerr) is caught too; finish() puts the terminal back and returns the text.
class StderrCapture {
public:
    StderrCapture();
    ~StderrCapture();
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    // Restores descriptor 2 and returns what was written meanwhile; later calls return "".
    std::string finish();

private:
    int saved_ = -1;
    int capture_ = -1;
};

}  // namespace quorrin::testing
