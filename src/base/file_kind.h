#pragma once

#include <string>

namespace kelmora {

// What stands under a path. Like every function of ours that takes one, these read it as the C library does:
// std::filesystem expects UTF-8 on Windows, where file names come in the system's code page.
bool pathExists(const std::string& path);
bool isDirectory(const std::string& path);

}  // namespace kelmora
