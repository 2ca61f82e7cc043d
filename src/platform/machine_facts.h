#pragma once

#include <string>

namespace kelmora {

// What the system says about itself and its user, without limits of length. Empty where it does not say.
// The running executable's whole path: the file itself, not a link to it.
std::string executableFile();
std::string accountName();
// System and architecture.
std::string platformName();
std::string systemVersion();
std::string processorModel();
// With its last separator.
std::string temporaryFolder();
std::string userDataFolder();

}  // namespace kelmora
