// Path text helpers. Paths are byte strings; nothing here touches the file system.
#pragma once

#include <string>
#include <string_view>

namespace quorrin::platform {

// The path without trailing "/"; "/" itself (or "//") stays "/".
std::string_view withoutTrailingSlashes(std::string_view path);
// "/a/b/c.txt" → "c.txt"; a trailing "/" is ignored; "/" → "/".
std::string_view lastComponent(std::string_view path);
// The text after the last "." of the last component, or empty: "a.tar.gz" → "gz", "README" → "".
std::string_view pathExtension(std::string_view path);
// The last component without its extension: "a.tar.gz" → "a.tar".
std::string_view stemOf(std::string_view path);
// The folder part: "/a/b/c" → "/a/b", "/a//b" → "/a", "/a" → "/", "b" → ".".
std::string_view parentOf(std::string_view path);
// Joins a folder and a name with one "/".
std::string appendComponent(std::string_view folder, std::string_view name);
// Removes "." components, empty components and resolves ".." lexically; keeps an absolute path
// absolute. Symbolic links are not touched.
std::string standardise(std::string_view path);
// ASCII lower case, the way extensions are compared.
std::string lowercase(std::string_view text);

}  // namespace quorrin::platform
