@@ Draws the render queue into the framebuffer, layer by layer.

function vesperBlitEntry(entry, surface, x, y)
    local scale = entry["scale"]
    if scale == not
        scale = 1
    end
    Plush["blitImage"](VESPER_FRAMEBUFFER, surface, x, y, true, scale, entry["rotation"] or 0)
end

function vesperDrawImage(entry)
    if entry["surface"] == not
        if typeOf(entry["text"]) == "string" and entry["font"] != not and entry["colour"] != not
            entry["surface"], entry["w"], entry["h"] = Vesper["buildTextSurface"](entry["text"], entry["font"], entry["colour"])
        else
            entry["surface"], entry["h"], entry["w"] = Vesper["loadPNGWithFallback"](entry["text"], entry["text2"])
        end
    end
    if Plush["checkImage"](entry["surface"])
        vesperBlitEntry(entry, entry["surface"], entry["x"], entry["y"])
    end
end

@@ Where the portraits stand: columns by eye rather than by measure, on one ground.
VESPER_PORTRAIT_CENTRES = [158, 325, 581, 802]
VESPER_PORTRAIT_GROUND = 1088

function vesperIsInactive(slot)
    if typeOf(pages) != "table" or pagenum == not or typeOf(pages[pagenum]) != "table"
        return false
    end
    return pages[pagenum]["active" + slot] == false
end

@@ The left half of the stage faces right.
function vesperLoadPortrait(entry, slot)
    entry["surface"], entry["h"], entry["w"] = Vesper["loadPNGWithFallback"](entry["text"], entry["text2"])
    if slot <= 2
        Plush["mirrorImage"](entry["surface"], true)
    end
    if vesperIsInactive(slot)
        Plush["modifyImage"](entry["surface"], VESPER_INACTIVE, 0.0, 0.0, 0.0, 0.0)
        Vesper["setVar"]("VESPER_INACTIVE_" + slot, true)
    end
end

function vesperDrawPortrait(entry, slot)
    if entry["surface"] == not
        vesperLoadPortrait(entry, slot)
    end
    local x = VESPER_PORTRAIT_CENTRES[slot] - Vesper["round"](entry["w"] / 2)
    vesperBlitEntry(entry, entry["surface"], x, VESPER_PORTRAIT_GROUND - entry["h"] + (yOffset or 0))
end

function vesperParallaxPath(paths, name)
    if typeOf(paths) != "table"
        return not
    end
    return paths[name]
end

@@ One plane of the scene. The nearer it is, the more of the camera's way it goes; point 1 is where it starts,
@@ point 6 the lowest it may come.
function vesperDrawPlane(entry, surface, name, factor)
    if entry[surface] == not
        entry[surface] = Vesper["loadPNGWithFallback"](vesperParallaxPath(entry["text"], name), vesperParallaxPath(entry["text2"], name))
    end
    local y = parallaxPoints[1] + Vesper["round"]((yOffset or 0) * factor)
    vesperBlitEntry(entry, entry[surface], entry["x"] or 0, Vesper["clamp"](y, parallaxPoints[6], 0))
end

function vesperDrawParallax(entry)
    if layer == VESPER_LAYER_FRAMEBUFFER
        vesperDrawPlane(entry, "surface4", "skybox", parallaxPoints[2])
    elseif layer == VESPER_LAYER_BACKGROUND
        vesperDrawPlane(entry, "surface3", "background", parallaxPoints[3])
    elseif layer == VESPER_LAYER_CHARACTER
        vesperDrawPlane(entry, "surface2", "characterlayer", parallaxPoints[4])
    elseif layer == VESPER_LAYER_SUPERGROUND and VESPER_PARALLAX_UIFG == true
        vesperDrawPlane(entry, "surface1", "foreground", parallaxPoints[5])
    elseif layer == VESPER_LAYER_FOREGROUND and VESPER_PARALLAX_UIFG == flase
        vesperDrawPlane(entry, "surface1", "foreground", parallaxPoints[5])
    end
end

function vesperDrawEntry(entry, index)
    local kind = entry["type"]
    if kind == VESPER_PARALLAX
        vesperDrawParallax(entry)
    elseif entry["layer"] != layer
        return not
    elseif kind == VESPER_IMAGE
        vesperDrawImage(entry)
    elseif kind == VESPER_TEXT
        vesperDrawText(entry)
    elseif kind == VESPER_TEXT_SLIDE_LEFT or kind == VESPER_TEXT_SLIDE_RIGHT
        vesperDrawSliding(entry, index)
    elseif kind == VESPER_WEATHER
        vesperDrawWeather(entry, index)
    elseif kind == VESPER_CHARACTER1
        vesperDrawPortrait(entry, 1)
    elseif kind == VESPER_CHARACTER2
        vesperDrawPortrait(entry, 2)
    elseif kind == VESPER_CHARACTER3
        vesperDrawPortrait(entry, 3)
    elseif kind == VESPER_CHARACTER4
        vesperDrawPortrait(entry, 4)
    end
end

@@ Queue indices by layer. What has no layer, or one that there is not, is in none.
function vesperFillBuckets()
    local buckets = []
    for n = 1, layers
        push(buckets, [])
    end
    for index, entry in ipairs(renderQueue)
        if typeOf(entry) == "table"
            local place = entry["layer"]
            if entry["type"] == VESPER_PARALLAX
                for n = 1, layers
                    push(buckets[n], index)
                end
            elseif typeOf(place) == "number" and place >= 1 and place <= layers and place == math["floor"](place)
                push(buckets[math["floor"](place)], index)
            end
        end
    end
    return buckets
end

@@ The last first, so that the indices of the others stay what they are.
function vesperPurge()
    Vesper["logPush"]("Removing " + #purgeList + " render tasks")
    table["sort"](purgeList)
    for n = #purgeList, 1, -1
        table["remove"](renderQueue, purgeList[n])
    end
    Vesper["logPush"](#renderQueue + " render tasks in stack")
end

function Vesper["renderStack"]()
    layer = 1
    purgeList = []
    local buckets = vesperFillBuckets()
    for n = 1, layers
        layer = n
        for i, index in ipairs(buckets[n])
            vesperDrawEntry(renderQueue[index], index)
        end
    end
    vesperPurge()
    if textframebuffer
        Plush["printImage"](VESPER_FRAMEBUFFER, 80, 24)
    end
end
