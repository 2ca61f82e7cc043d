@@ Small pictures of the stage for the slots. Files of pictures are not packed, so a thumbnail is kept as another picture
@@ of a quarter of its width: the brightness of each pixel, four in one, and below it the colour of each four by four.

NOVEL_THUMBNAIL = 0.2
NOVEL_PACKED_WIDE = 48

function novelShaderOf(lines)
    return Plush["compileShader"](table["concat"](lines, "\n"))
end

@@ A part of a pixel of 255 is added, since channels are cut off and not rounded.
function novelMakeThumbnailShaders()
    local shrink = []
    local light = []
    local mean = []
    for channel in ["R", "G", "B"]
        local small = string["lower"](channel)
        local take = "sample" + channel
        push(shrink, small + " = (" + take + "(x, y) + " + take + "(x + 2, y) + " + take + "(x + 4, y + 2) + " + take + "(x + 1, y + 3) + " + take + "(x + 3, y + 4)) / 5")
        push(mean, "local m" + small + " = (" + take + "(cx, cy) + " + take + "(cx + 2, cy) + " + take + "(cx, cy + 2) + " + take + "(cx + 2, cy + 2)) / 4")
    end
    for n, channel in ipairs(["r", "g", "b", "a"])
        local at = "(x * 4 + " + (n - 1) + ", y)"
        push(light, channel + " = sampleR" + at + " * 0.3 + sampleG" + at + " * 0.59 + sampleB" + at + " * 0.11 + 0.002")
    end
    novelShrinker = novelShaderOf(shrink)
    novelLightPacker = novelShaderOf(light)
    novelColourPacker = novelShaderOf(["local cx = x * 4", "local cy = y * 4", mean[1], mean[2], mean[3], "local light = mr * 0.3 + mg * 0.59 + mb * 0.11", "r = 0.502 + (mb - light) * 0.56", "g = 0.502 + (mr - light) * 0.71", "b = 0", "a = 1"])
    @@ Colour is mixed from the four blocks around a pixel.
    local unpack = ["local column = floor(x / 4)", "local part = x - column * 4", "local light = sampleR(column, y)", "if part > 2.5 then", "light = sampleA(column, y)", "elseif part > 1.5 then", "light = sampleB(column, y)", "elseif part > 0.5 then", "light = sampleG(column, y)", "end"]
    for line in ["local u = clamp((x - 1.5) / 4, 0, wide - 1)", "local v = clamp((y - 1.5) / 4, 0, low - high - 1)", "local u0 = floor(u)", "local v0 = high + floor(v)", "local u1 = min(u0 + 1, wide - 1)", "local v1 = min(v0 + 1, low - 1)", "local su = u - u0", "local sv = fract(v)"]
        push(unpack, line)
    end
    for pair in [["blue", "sampleR"], ["red", "sampleG"]]
        push(unpack, "local " + pair[1] + " = mix(mix(" + pair[2] + "(u0, v0), " + pair[2] + "(u1, v0), su), mix(" + pair[2] + "(u0, v1), " + pair[2] + "(u1, v1), su), sv) - 0.5")
    end
    for line in ["r = light + red / 0.71", "b = light + blue / 0.56", "g = light - (red / 0.71 * 0.3 + blue / 0.56 * 0.11) / 0.59", "a = 1"]
        push(unpack, line)
    end
    novelUnpacker = novelShaderOf(unpack)
end

function novelTakeThumbnail()
    vesperKillSurface(novelThumbnail)
    if novelShrinker == not
        novelMakeThumbnailShaders()
    end
    novelDrawStage()
    novelThumbnail = Plush["shader"](VESPER_FRAMEBUFFER, novelShrinker, {}, NOVEL_THUMBNAIL)
    novelDirty = true
end

function novelPacked(picture)
    local w, h = Plush["imageSize"](picture)
    local light = Plush["shader"](picture, novelLightPacker, {}, 1)
    local colour = Plush["shader"](picture, novelColourPacker, {}, 1)
    local below = (h + 3) \ 4
    local packed = Plush["createImage"](NOVEL_PACKED_WIDE, h + below, 0, 0, 0, 0)
    Plush["blitImageRect"](packed, light, 0, 0, NOVEL_PACKED_WIDE, h, 0, 0, false, 1)
    Plush["blitImageRect"](packed, colour, 0, 0, NOVEL_PACKED_WIDE, below, 0, h, false, 1)
    Plush["killImage"](light)
    Plush["killImage"](colour)
    return packed
end

function novelUnpacked(packed)
    local w, low = Plush["imageSize"](packed)
    local high = low * 4 \ 5
    local wide = NOVEL_PACKED_WIDE * 4
    local sheet = Plush["createImage"](wide, low, 0, 0, 0, 0)
    Plush["blitImage"](sheet, packed, 0, 0, false, 1, 0)
    local whole = Plush["shader"](sheet, novelUnpacker, {wide = NOVEL_PACKED_WIDE, high = high, low = low}, 1)
    local picture = Plush["createImage"](wide, high, 0, 0, 0, 255)
    Plush["blitImageRect"](picture, whole, 0, 0, wide, high, 0, 0, false, 1)
    Plush["killImage"](sheet)
    Plush["killImage"](whole)
    return picture
end

function novelKeepThumbnail(slot)
    if novelThumbnail != not
        local packed = novelPacked(novelThumbnail)
        pcall(Plush["saveImage"], novelPicturePath(slot), packed)
        Plush["killImage"](packed)
    end
end

@@ Those of earlier versions are whole pictures.
function novelReadThumbnail(path)
    local picture = novelReadPicture(path)
    local w, h = Plush["imageSize"](picture)
    if w != NOVEL_PACKED_WIDE
        return picture
    end
    if novelShrinker == not
        novelMakeThumbnailShaders()
    end
    local whole = novelUnpacked(picture)
    Plush["killImage"](picture)
    return whole
end
