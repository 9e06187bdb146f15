// category(): which of the seven category folders a file belongs in, by its last extension.
#pragma once

#include <string_view>

namespace quorrin::Engine {

// "07 Projects" for project documents, the first matching row of categories(), else
// "06 Other Files". The result refers to static storage.
std::string_view category(std::string_view path);

}  // namespace quorrin::Engine
