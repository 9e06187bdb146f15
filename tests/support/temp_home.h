// TempHome: a fresh temporary folder used as HOME for one test, removed afterwards.
//
// The real HOME is never touched: HOME points into the temporary folder and the XDG variables are
// cleared, so every default location (trash, recently-used list, settings) lies inside it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quorrin::testing {

class TempHome {
public:
    // Where the temporary folder lives: on disk below $TMPDIR (or /tmp), or in memory below
    // /dev/shm when that is a writable folder, for tests that make thousands of durable writes and
    // check logic rather than the disk (syncing memory costs nothing).
    enum class Backing { disk, memory };

    explicit TempHome(Backing backing = Backing::disk);
    ~TempHome();
    TempHome(const TempHome&) = delete;
    TempHome& operator=(const TempHome&) = delete;

    // The temporary folder that holds HOME and anything else a test needs outside it.
    const std::string& base() const { return base_; }
    // The temporary HOME, base()/home.
    const std::string& home() const { return home_; }
    // home() + "/" + relative.
    std::string path(const std::string& relative) const;

    // Creates a file (and its parent folders) with the given content; returns its absolute path.
    std::string writeFile(const std::string& relative, const std::string& content = "x") const;
    // Creates a folder and its parents; returns its absolute path.
    std::string makeDir(const std::string& relative) const;

private:
    std::string base_;
    std::string home_;
    std::map<std::string, std::optional<std::string>> savedEnvironment_;
};

// Helpers on absolute paths.
std::string readFile(const std::string& path);
// The lines of a text without their "\n"; a final line without one is kept.
std::vector<std::string> linesOf(const std::string& text);
void writeFileAt(const std::string& path, const std::string& content);
void setModified(const std::string& path, std::int64_t seconds, std::uint32_t nanoseconds = 0);
bool existsNoFollow(const std::string& path);
// Makes `levels` nested folders named "level-of-the-tree-20" below `folder`, through descriptors
// so that the path may grow past PATH_MAX, and the file "bottom.txt" holding `content` in the
// deepest one; false when any step failed.
bool makeDeepTree(const std::string& folder, int levels, const std::string& content);
// Removes a tree, making unreadable folders readable first.
void removeTree(const std::string& path);
// Runs a program without a shell; returns its exit status and fills `output` with its stdout.
int runProgram(const std::string& program, const std::initializer_list<std::string>& arguments,
               std::string* output = nullptr);
// The same for a program and its arguments in `words`, returning the raw wait status (so that a
// death by signal shows), or -1 when the program could not be started.
int runProgramStatus(const std::vector<std::string>& words, std::string* output = nullptr);

}  // namespace quorrin::testing
