#pragma once

#include <string>

namespace kelmora {

// Every backslash becomes a slash, and nothing else changes.
std::string normalisePath(const std::string& path);
// Everything in front of the last separator, without it; empty when there is none in front of anything.
std::string sourceDirectoryForPath(const std::string& path);
bool isAbsolutePath(const std::string& path);
std::string joinPath(const std::string& base, const std::string& path);

}  // namespace kelmora
