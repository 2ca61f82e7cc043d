@@ Pictures that are made while the game runs: veils over the frame and the frame itself as a picture.

veils = {}

@@ Black over everything, 0 to 255. Kept, since a curtain goes through the same few.
function veil(alpha)
    if veils[alpha] == not
        veils[alpha] = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 4, 6, 14, alpha)
    end
    return veils[alpha]
end

@@ A dimmed copy of the frame, to stand behind a menu.
function frameAsPicture()
    local copy = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, 255)
    Plush["blitImage"](copy, VESPER_FRAMEBUFFER, 0, 0, false, 1, 0)
    Plush["blitImage"](copy, veil(150), 0, 0, true, 1, 0)
    return copy
end
