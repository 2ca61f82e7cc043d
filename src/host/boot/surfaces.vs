@@ Specs of fonts and colours as game scripts write them, and pictures with a stand-in.

@@ A font spec is a list of a font handle and a baseline offset.
function vesperIsFontSpec(spec)
    return typeOf(spec) == "table" and typeOf(spec[1]) == "userdata"
end

function vesperIsColour(colour)
    return typeOf(colour) == "table" and typeOf(colour[1]) == "number"
end

@@ What a text stands for: the global of that name, else its value as an expression.
function vesperNamedSpec(text, isSpec)
    if typeOf(text) != "string" or text == ""
        return not
    end
    local named = Vesper["getVar"](text)
    if isSpec(named)
        return named
    end
    local ok, value = pcall(vesperEvaluate, text)
    if ok and isSpec(value)
        return value
    end
    return not
end

function vesperEvaluate(text)
    local chunk = load("return " + text)
    return chunk()
end

function Vesper["resolveFontSpec"](fontSpec)
    if vesperIsFontSpec(fontSpec)
        return fontSpec
    end
    local named = vesperNamedSpec(fontSpec, vesperIsFontSpec)
    if named != not
        return named
    end
    if vesperIsFontSpec(mediumtestf)
        return mediumtestf
    end
    return not
end

function Vesper["resolveColourSpec"](colour)
    if vesperIsColour(colour)
        return {value = colour}
    end
    local named = vesperNamedSpec(colour, vesperIsColour)
    if named != not
        return {value = named}
    end
    return {value = {255, 255, 255, 255}}
end

function Vesper["fontYOffset"](fontSpec)
    if typeOf(fontSpec) != "table"
        return 0
    end
    return toNumber(fontSpec[2]) or 0
end

@@ The first of the pictures that opens, else the stand-in for missing ones: image, height, width.
function Vesper["loadPNGWithFallback"](primaryPath, fallbackPath)
    for i, path in ipairs({primaryPath, fallbackPath})
        if typeOf(path) == "string" and path != ""
            local file = io["open"](path, "r")
            if file
                file["close"](file)
                return Plush["loadPNG"](path)
            end
        end
    end
    return Plush["loadPNG"](nobmp)
end

function vesperKillSurface(surface)
    if surface != not
        Plush["killImage"](surface)
    end
end

@@ Empties the stage between scenes. Weather keeps its surfaces, which it shares.
function Vesper["cleanup"](skipbuffer)
    if not skipbuffer
        vesperKillSurface(prevBuffer)
    end
    Vesper["clearButtons"]()
    VESPER_SLIDE_PROGRESS = {}
    VESPER_SLIDE_TEXT = {}
    drawFrame = false
    for i, entry in ipairs(renderQueue)
        if entry["type"] != VESPER_WEATHER
            vesperKillSurface(entry["surface"])
        end
        if entry["type"] == VESPER_PARALLAX
            for n = 1, 4
                vesperKillSurface(entry["surface" + n])
            end
        end
    end
    renderQueue = {}
    input["mouse"]["position"] = {}
    input["keyboard"] = {}
end

@@ Sliding text is remembered by its place in the queue, its name and its position.
function Vesper["slideStateKey"](entry, queueIndex)
    return queueIndex + ":" + entry["identifier"] + ":" + entry["x"] + ":" + entry["y"]
end

@@ Reveals one more character: the partial text, the whole length, and how far it has come.
function Vesper["stepSlideText"](entry, queueIndex)
    if (typeOf(entry["text"]) != "string" or entry["text"] == "") and typeOf(entry["text2"]) == "string" and entry["text2"] != ""
        entry["text"] = entry["text2"]
        entry["text2"] = ""
    end
    local text = ""
    if typeOf(entry["text"]) == "string"
        text = entry["text"]
    end
    local key = Vesper["slideStateKey"](entry, queueIndex)
    if VESPER_SLIDE_TEXT[key] != text
        VESPER_SLIDE_TEXT[key] = text
        VESPER_SLIDE_PROGRESS[key] = 0
    end
    local length = Vesper["utf8lenSafe"](text)
    local progress = VESPER_SLIDE_PROGRESS[key] or 0
    if progress < length
        progress += 1
    end
    VESPER_SLIDE_PROGRESS[key] = progress
    local partial = Vesper["utf8prefixSafe"](text, progress)
    if partial == "" and progress > 0
        partial = string["sub"](text, 1, progress)
    end
    entry["text2"] = partial
    return partial, length, progress
end
