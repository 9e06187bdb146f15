// Splits, joins and compares paths as byte strings, without touching the file system.
#include "platform/paths.h"

#include <vector>

namespace quorrin::platform {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

std::string_view lastComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    auto slash = path.rfind('/');
    if (slash == std::string_view::npos || path.size() == 1)
        return path;
    return path.substr(slash + 1);
}

std::string_view pathExtension(std::string_view path) {
    std::string_view name = lastComponent(path);
    auto dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return {};
    return name.substr(dot + 1);
}

std::string_view stemOf(std::string_view path) {
    std::string_view name = lastComponent(path);
    auto dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return name;
    return name.substr(0, dot);
}

std::string_view parentOf(std::string_view path) {
    path = withoutTrailingSlashes(path);
    auto slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return ".";
    // A run of slashes before the last name belongs to neither part ("/a//b" gives "/a").
    while (slash > 0 && path[slash - 1] == '/')
        --slash;
    if (slash == 0)
        return path.substr(0, 1);
    return path.substr(0, slash);
}

std::string appendComponent(std::string_view folder, std::string_view name) {
    // Sized once: the scanner keeps every joined path as an entry's url, and growing the string
    // by appending would leave it with up to twice the capacity it needs.
    const bool slash = folder.empty() || folder.back() != '/';
    std::string joined;
    joined.reserve(folder.size() + (slash ? 1 : 0) + name.size());
    joined.append(folder);
    if (slash)
        joined.push_back('/');
    joined.append(name);
    return joined;
}

std::string standardise(std::string_view path) {
    const bool absolute = !path.empty() && path.front() == '/';
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t end = path.find('/', start);
        if (end == std::string_view::npos)
            end = path.size();
        std::string_view part = path.substr(start, end - start);
        if (part.empty() || part == ".") {
        } else if (part == "..") {
            if (!parts.empty() && parts.back() != "..")
                parts.pop_back();
            else if (!absolute)
                parts.push_back(part);
        } else {
            parts.push_back(part);
        }
        start = end + 1;
    }
    std::string result = absolute ? "/" : "";
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            result.push_back('/');
        result.append(parts[i]);
    }
    if (result.empty())
        return std::string(1, '.');
    return result;
}

std::string lowercase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

}  // namespace quorrin::platform
