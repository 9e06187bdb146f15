// Splitting path text into its folder and last name, on bytes, without touching the file system.
#pragma once

#include <string>
#include <string_view>

namespace quorrin::platform {

// The path with trailing "/" removed; "/" itself (or "//") stays "/".
std::string withoutTrailingSlashes(std::string_view path);

// The folder part of a path without trailing slashes: "/a/b" gives "/a", "/a" gives "/", "b" gives
// ".", "/" gives "/".
std::string parentPath(std::string_view path);

// The last name of a path without trailing slashes: "/a/b" gives "b", "/" gives "".
std::string lastComponent(std::string_view path);

// folder + "/" + name, without doubling the slash when the folder is "/".
std::string joinPath(std::string_view folder, std::string_view name);

}  // namespace quorrin::platform
