#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

namespace kelmora {

struct Interpreter;

// Where script was when the exception that is on its way was raised. Costs nothing while nothing is raised.
class ErrorTrail {
public:
    struct Place {
        std::string path;        // empty for text that came from no file
        std::uint32_t line = 0;  // from 1
        std::string statement;
        std::uint32_t times = 1;  // for a call that led to itself
    };

    // To be called while an exception passes through a call, before the call's frame is gone.
    void note(const Interpreter& script);

    // The statement that raised the exception in the handler that asks, then those that led there by calls,
    // the innermost first; at most 16. Nothing for one that was not noted. Where script caught an exception
    // and raised its message again, the way of the first.
    const std::vector<Place>& places(const std::string& message) const;

private:
    struct Way {
        std::exception_ptr of;
        std::vector<Place> places;
    };
    Way last_;
    Way earlier_;
};

}  // namespace kelmora
