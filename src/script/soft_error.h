#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace kelmora {

// What the script function `error` throws when no protected call is running.
class RaisedScriptError : public std::exception {
public:
    explicit RaisedScriptError(std::string message) : message_(std::move(message)) {}
    const char* what() const noexcept override { return message_.c_str(); }

private:
    std::string message_;
};

// An error inside a protected call does not throw: it stays pending here, and everything that runs
// script returns early until the protected call that owns it takes it.
class SoftError {
public:
    // Throws when no protected call is running. The first message stays until it is taken.
    void raise(std::string message) {
        if (protectedDepths_.empty()) throw RaisedScriptError(std::move(message));
        if (pending_) return;
        pending_ = true;
        depth_ = protectedDepths_.back();
        message_ = std::move(message);
    }
    bool pending() const { return pending_; }
    // An error that is raised now is thrown: no protected call is running.
    bool throws() const { return protectedDepths_.empty(); }
    // True when code at this call depth has to return at once.
    bool aborts(std::uint32_t callDepth) const { return pending_ && callDepth > depth_; }

    void enterProtected(std::uint32_t callDepth) { protectedDepths_.push_back(callDepth); }
    void leaveProtected() { protectedDepths_.pop_back(); }
    // Takes the error when it belongs to the protected call at this depth.
    bool take(std::uint32_t callDepth, std::string& message) {
        if (!pending_ || depth_ != callDepth) return false;
        pending_ = false;
        message = std::move(message_);
        return true;
    }

private:
    bool pending_ = false;
    std::uint32_t depth_ = 0;
    std::string message_;
    std::vector<std::uint32_t> protectedDepths_;
};

}  // namespace kelmora
