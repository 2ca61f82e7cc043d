@@ Text helpers: UTF-8, slices that cannot fail, numbers as text.

function Vesper["utf8lenSafe"](s)
    if typeOf(s) != "string"
        return 0
    end
    local ok, length = pcall(utf8["len"], s)
    if ok and typeOf(length) == "number"
        return length
    end
    return #s
end

@@ Characters i to j, counted from the end when negative.
function Vesper["utf8subSafe"](s, i, j)
    if typeOf(s) != "string"
        return ""
    end
    local length = Vesper["utf8lenSafe"](s)
    local first = i or 1
    local last = j or -1
    if first < 0
        first = length + first + 1
    end
    if last < 0
        last = length + last + 1
    end
    if first < 1
        first = 1
    end
    if last > length
        last = length
    end
    if first > last
        return ""
    end
    local from = utf8["offset"](s, first)
    local behind = utf8["offset"](s, last + 1)
    if from == not or behind == not
        return string["sub"](s, first, last)
    end
    return string["sub"](s, from, behind - 1)
end

@@ The first characters, told by their lead bytes alone: text that is cut short may break anywhere else.
function Vesper["utf8prefixSafe"](s, count)
    local at = 1
    local taken = 0
    while taken < count and at <= #s
        local lead = string["byte"](s, at)
        if lead >= 240
            at += 4
        elseif lead >= 224
            at += 3
        elseif lead >= 192
            at += 2
        else
            at += 1
        end
        taken += 1
    end
    return string["sub"](s, 1, at - 1)
end

@@ Output of a shell command. Unless raw, on one line without blanks at its ends.
function Vesper["capture"](cmd, raw)
    local pipe = assert(io["popen"](cmd, "r"))
    local text = pipe["read"](pipe, "*a") or ""
    pipe["close"](pipe)
    if raw
        return text
    end
    text = string["gsub"](text, "^%s+", "")
    text = string["gsub"](text, "%s+$", "")
    return string["gsub"](text, "[\n\r]+", " ")
end

@@ Eight bytes a row: offset, values, and the bytes that can be shown.
function Vesper["hexDump"](str)
    local out = ""
    for start = 1, #str, 8
        local row = string["sub"](str, start, start + 7)
        local shown = ""
        out += string["format"]("%04x: ", start - 1)
        for i = 1, #row
            local value = string["byte"](row, i)
            out += string["format"]("%02x ", value)
            if value >= 32 and value <= 126
                shown += string["char"](value)
            else
                shown += "."
            end
        end
        out += string["rep"]("   ", 8 - #row) + shown + "\n"
    end
    return out
end

function Vesper["round"](num, numDecimalPlaces)
    return toNumber(string["format"]("%." + (numDecimalPlaces or 0) + "f", num))
end

@@ A whole file as text. A missing one fails on the handle.
function Vesper["contents"](path)
    local file = io["open"](path, "r")
    local text = file["read"](file, "*a") or ""
    file["close"](file)
    return text
end

@@ A whole file as text, or nothing when it is not there.
function vesperContentsIfPresent(path)
    local file = io["open"](path, "r")
    if not file
        return not
    end
    local text = file["read"](file, "*a") or ""
    file["close"](file)
    return text
end

@@ A chunk of the text; raises when it does not load.
function vesperLoadChunkOrError(scriptText, chunkName)
    local chunk = load(scriptText)
    if not chunk
        error("Failed to load script chunk: " + chunkName)
    end
    return chunk
end
