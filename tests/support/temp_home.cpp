// Makes a temporary HOME, clears the XDG variables for the test, and removes it all afterwards.
#include "tests/support/temp_home.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace quorrin::testing {
namespace fs = std::filesystem;

namespace {

const char* const managedVariables[] = {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME",
                                        "XDG_CACHE_HOME", "XDG_STATE_HOME"};

}  // namespace

TempHome::TempHome(Backing backing) {
    const char* tmp = std::getenv("TMPDIR");
    std::string folder = tmp && *tmp ? tmp : "/tmp";
    if (backing == Backing::memory && ::access("/dev/shm", W_OK | X_OK) == 0)
        folder = "/dev/shm";
    std::string pattern = folder + "/quorrin-test-XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (::mkdtemp(buffer.data()) == nullptr)
        throw std::runtime_error(std::string("mkdtemp: ") + std::strerror(errno));
    base_ = buffer.data();
    home_ = base_ + "/home";
    fs::create_directories(home_);
    for (const char* name : managedVariables) {
        const char* value = std::getenv(name);
        savedEnvironment_[name] = value ? std::optional<std::string>(value) : std::nullopt;
        ::unsetenv(name);
    }
    ::setenv("HOME", home_.c_str(), 1);
}

TempHome::~TempHome() {
    for (const auto& [name, value] : savedEnvironment_) {
        if (value)
            ::setenv(name.c_str(), value->c_str(), 1);
        else
            ::unsetenv(name.c_str());
    }
    removeTree(base_);
}

std::string TempHome::path(const std::string& relative) const {
    return home_ + "/" + relative;
}

std::string TempHome::writeFile(const std::string& relative, const std::string& content) const {
    std::string full = path(relative);
    fs::create_directories(fs::path(full).parent_path());
    writeFileAt(full, content);
    return full;
}

std::string TempHome::makeDir(const std::string& relative) const {
    std::string full = path(relative);
    fs::create_directories(full);
    return full;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + path);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

void writeFileAt(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out)
        throw std::runtime_error("cannot write " + path);
    out << content;
}

void setModified(const std::string& path, std::int64_t seconds, std::uint32_t nanoseconds) {
    struct timespec times[2];
    times[0].tv_sec = 0;
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = static_cast<time_t>(seconds);
    times[1].tv_nsec = nanoseconds;
    if (::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) != 0)
        throw std::runtime_error("utimensat " + path + ": " + std::strerror(errno));
}

bool existsNoFollow(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

bool makeDeepTree(const std::string& folder, int levels, const std::string& content) {
    int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels && dir >= 0; ++level) {
        const char* name = "level-of-the-tree-20";
        int next =
            ::mkdirat(dir, name, 0700) == 0 ? ::openat(dir, name, O_RDONLY | O_DIRECTORY) : -1;
        ::close(dir);
        dir = next;
    }
    if (dir < 0)
        return false;
    int file = ::openat(dir, "bottom.txt", O_CREAT | O_WRONLY, 0600);
    ::close(dir);
    if (file < 0)
        return false;
    const bool written =
        ::write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size());
    return ::close(file) == 0 && written;
}

void removeTree(const std::string& path) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(path, error)))
        return;
    // Restore access to anything a test locked away so that the tree can be removed.
    for (auto it = fs::recursive_directory_iterator(
             path, fs::directory_options::skip_permission_denied, error);
         !error && it != fs::recursive_directory_iterator(); it.increment(error)) {
        if (it->is_directory(error) && !it->is_symlink(error))
            ::chmod(it->path().c_str(), 0700);
    }
    ::chmod(path.c_str(), 0700);
    // Second pass: folders that were unreadable during the first are readable now.
    for (int pass = 0; pass < 4; ++pass) {
        error.clear();
        fs::remove_all(path, error);
        if (!error)
            return;
        for (auto it = fs::recursive_directory_iterator(
                 path, fs::directory_options::skip_permission_denied, error);
             it != fs::recursive_directory_iterator(); it.increment(error)) {
            if (error)
                break;
            if (it->is_directory(error) && !it->is_symlink(error))
                ::chmod(it->path().c_str(), 0700);
        }
    }
}

int runProgram(const std::string& program, const std::initializer_list<std::string>& arguments,
               std::string* output) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    int status = runProgramStatus(words, output);
    return status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int runProgramStatus(const std::vector<std::string>& given, std::string* output) {
    std::vector<std::string> words = given;
    const std::string& program = words.front();
    std::vector<char*> argv;
    for (auto& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC) != 0)
        return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
    pid_t pid = 0;
    int spawned = ::posix_spawnp(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeFds[1]);
    std::string collected;
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(pipeFds[0], buffer, sizeof buffer)) > 0)
        collected.append(buffer, n);
    ::close(pipeFds[0]);
    if (spawned != 0)
        return -1;
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (output)
        *output = collected;
    return status;
}

}  // namespace quorrin::testing
