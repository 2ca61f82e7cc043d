#pragma once

#include <string>
#include <string_view>

#include "ai/ai_model.h"

namespace kelmora {

// A model as text: a line "state|successor:count,successor:count" for each state, joined by line feeds.
// Nothing is escaped, so that a model with one of these marks in a state or successor loses by it.
std::string aiModelText(const AIModel& model);
// Lines without "|" and items without ":" are skipped. Raises std::runtime_error for a count that is none.
AIModel aiModelFromText(std::string_view text);

// These raise std::runtime_error with the path for files that cannot be written or read.
void aiSaveModelToPath(const AIModel& model, const std::string& path);
AIModel aiLoadModelFromPath(const std::string& path);
// The whole content of a file.
std::string aiReadFile(const std::string& path);

}  // namespace kelmora
