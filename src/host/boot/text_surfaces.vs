@@ Text as an image of its own, in exactly one colour: its edges differ in alpha alone.

function vesperFontHandle(spec)
    if typeOf(spec) == "table"
        spec = spec[1]
    end
    if typeOf(spec) == "userdata"
        return spec
    end
    return not
end

@@ The surface, its width and its height; nothing, 0 and 0 where there is no text, no font or no picture of it.
function Vesper["buildTextSurface"](text, fontSpec, colour)
    if typeOf(text) != "string" or text == ""
        return not, 0, 0
    end
    local font = vesperFontHandle(Vesper["resolveFontSpec"](fontSpec)) or vesperFontHandle(fontSpec)
    if font == not
        return not, 0, 0
    end
    local ink = Vesper["resolveColourSpec"](colour)["value"]
    local alpha = ink[4]
    if alpha == not
        alpha = 255
    end
    local surface = Font["renderText"](text, font, ink[1], ink[2], ink[3], alpha)
    if not Plush["checkImage"](surface)
        return not, 0, 0
    end
    Plush["modifyImage"](surface, VESPER_COLOUR_FILL, ink[1], ink[2], ink[3], alpha)
    local w, h = Plush["imageSize"](surface)
    return surface, w, h
end
