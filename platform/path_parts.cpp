// Splitting path text into its folder and last name, on bytes, without touching the file system.
#include "platform/path_parts.h"

namespace quorrin::platform {

std::string withoutTrailingSlashes(std::string_view path) {
    std::size_t end = path.size();
    while (end > 1 && path[end - 1] == '/')
        --end;
    if (end == 1 && path[0] == '/')
        return "/";
    return std::string(path.substr(0, end));
}

std::string parentPath(std::string_view path) {
    std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return ".";
    // Collapse a run of slashes before the last name ("/a//b" gives "/a").
    while (slash > 0 && path[slash - 1] == '/')
        --slash;
    if (slash == 0)
        return "/";
    return std::string(path.substr(0, slash));
}

std::string lastComponent(std::string_view path) {
    std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return std::string(path);
    return std::string(path.substr(slash + 1));
}

std::string joinPath(std::string_view folder, std::string_view name) {
    std::string joined(folder);
    if (joined.empty() || joined.back() != '/')
        joined.push_back('/');
    joined.append(name);
    return joined;
}

}  // namespace quorrin::platform
