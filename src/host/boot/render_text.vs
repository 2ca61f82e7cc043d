@@ Text entries of the render queue, still and sliding.

@@ Static text is measured, put in the middle of its box once, and is an image from then on.
function vesperDrawText(entry)
    local offset = Vesper["fontYOffset"](entry["font"])
    entry["font"] = Vesper["resolveFontSpec"](entry["font"])
    entry["colour"] = Vesper["resolveColourSpec"](entry["colour"])["value"]
    if entry["surface"] == not
        entry["surface"], entry["w"], entry["h"] = Vesper["buildTextSurface"](entry["text"], entry["font"], entry["colour"])
    elseif Plush["checkImage"](entry["surface"])
        entry["w"], entry["h"] = Plush["imageSize"](entry["surface"])
    else
        entry["w"] = 0
        entry["h"] = 0
    end
    if entry["fw"] != not
        entry["x"] -= Vesper["middle"](entry["w"], entry["fw"])
        entry["fw"] = not
    end
    if Plush["checkImage"](entry["surface"])
        entry["y"] -= offset
        vesperBlitEntry(entry, entry["surface"], entry["x"], entry["y"])
        entry["type"] = VESPER_IMAGE
    end
end

function vesperTickSlide()
    if MIXER_ENABLED and not MIXER_SKIP_SLIDE and click != not
        Audio["play"](click, false, 1)
    end
end

@@ One more character a frame. Text that slides to the left ends where it was placed, the other begins there.
function vesperDrawSliding(entry, index)
    local key = Vesper["slideStateKey"](entry, index)
    local before = VESPER_SLIDE_PROGRESS[key] or 0
    local shown = VESPER_SLIDE_TEXT[key]
    local partial, length, progress = Vesper["stepSlideText"](entry, index)
    if progress != before or (progress > 0 and VESPER_SLIDE_TEXT[key] != shown)
        vesperTickSlide()
    end
    local surface, w, h = Vesper["buildTextSurface"](partial, entry["font"], entry["colour"])
    entry["w"] = w
    entry["h"] = h
    local x = entry["x"]
    if entry["type"] == VESPER_TEXT_SLIDE_LEFT
        x -= w
    end
    if surface != not
        vesperBlitEntry(entry, surface, x, entry["y"] - Vesper["fontYOffset"](entry["font"]))
        Plush["killImage"](surface)
    end
    if progress >= length
        VESPER_SLIDE_TEXT[key] = not
        VESPER_SLIDE_PROGRESS[key] = not
        entry["x"] = x
        entry["type"] = VESPER_TEXT
    end
end
