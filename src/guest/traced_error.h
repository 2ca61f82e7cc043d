#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/call_trail.h"
#include "guest/location_error.h"

namespace kelmora::guest {

// The text of a chunk, kept for the trails of failures; null where only its code is known.
using SharedSource = std::shared_ptr<const std::string>;

// Adds a call, or one time more to the last. False when the trail is full. The source may be null.
bool addCall(CallTrail& trail, std::string_view function, std::string_view chunkName, std::uint32_t line,
             const std::string* source);

// A failure of a guest's program with the calls that it came through.
class TracedGuestError : public GuestError {
public:
    explicit TracedGuestError(const std::string& text) : GuestError(text) {}
    TracedGuestError(const std::string& text, CallTrail trail)
        : GuestError(text), trail_(std::make_shared<CallTrail>(std::move(trail))) {}

    // Null when nothing was gathered.
    CallTrail* trail() const { return trail_.get(); }

private:
    std::shared_ptr<CallTrail> trail_;  // shared, as copies of an exception must not fail
};

// Called in a handler: what the exception at hand has gathered; empty when it has nothing.
CallTrail trailOfFailure();

}  // namespace kelmora::guest
