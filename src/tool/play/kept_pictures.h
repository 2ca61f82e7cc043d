#pragma once

#include <map>
#include <string>
#include <vector>

#include "tool/play/game_session.h"

namespace kelmora {

// Picture files that runs of one game load again and again, each decoded once. What a game has written itself
// is left alone.
class KeptPictures {
public:
    // From here on the session's pictures come from here. It does not outlive this.
    void serve(GameSession& session);

private:
    struct Picture {
        int width;
        int height;
        std::vector<unsigned char> pixels;
    };

    Variable load(VesperScript& engine, const Variable& original, const std::vector<Variable>& arguments);
    void keep(const std::string& path, const Variable& loaded);

    static constexpr std::size_t mostBytes = std::size_t{192} << 20;
    std::map<std::string, Picture> pictures_;
    std::size_t bytes_ = 0;
};

}  // namespace kelmora
