@@ Text and data as text.

function novelReplace(text, old, new)
    local at = 1
    local out = ""
    while true
        local first, last = string["find"](text, old, at, true)
        if first == not
            return out + string["sub"](text, at)
        end
        out += string["sub"](text, at, first - 1) + new
        at = last + 1
    end
end

@@ The parts between separators, empty ones too.
function novelSplit(text, separator)
    local parts = []
    local at = 1
    while true
        local first, last = string["find"](text, separator, at, true)
        if first == not
            push(parts, string["sub"](text, at))
            return parts
        end
        push(parts, string["sub"](text, at, first - 1))
        at = last + 1
    end
end

function novelEscaped(text)
    text = novelReplace(text, "\\", "\\\\")
    text = novelReplace(text, "\"", "\\\"")
    text = novelReplace(text, "\n", "\\n")
    text = novelReplace(text, "\r", "\\r")
    return novelReplace(text, "\t", "\\t")
end

@@ JSON; arrays become objects with the keys "1", "2" and so on, which read the same.
function novelJson(value)
    local kind = typeOf(value)
    if kind == "string"
        return "\"" + novelEscaped(value) + "\""
    elseif kind == "number" or kind == "boolean"
        return toString(value)
    elseif kind != "table"
        return "null"
    end
    local parts = []
    for key, inner in pairs(value)
        push(parts, "\"" + novelEscaped("" + key) + "\": " + novelJson(inner))
    end
    return "{" + table["concat"](parts, ", ") + "}"
end

@@ What tells one text from another: eight digits of its checksum and its length.
function novelFingerprint(text)
    return string["format"]("%08x", Vesper["checksum"](text)) + string["format"]("%x", #text)
end

@@ Of a table, each entry once more; what stands in the entries is shared.
function novelCopy(from)
    local to = {}
    for key, value in pairs(from)
        to[key] = value
    end
    return to
end

@@ The first `most` characters at whole words, with an ellipsis where something is left out.
function novelShortened(text, most)
    text = novelReplace(text, "\n", " ")
    if Vesper["utf8lenSafe"](text) <= most
        return text
    end
    local cut = Vesper["utf8prefixSafe"](text, most - 1)
    return string["gsub"](cut, "re:[ ,.;:]+[^ ]*$", "") + "…"
end

@@ Year, month, day, hour and minute of seconds since 1970.
function novelDate(seconds)
    local days = seconds \ 86400
    local z = days + 719468
    local era = z \ 146097
    local dayOfEra = z - era * 146097
    local yearOfEra = (dayOfEra - dayOfEra \ 1460 + dayOfEra \ 36524 - dayOfEra \ 146096) \ 365
    local dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra \ 4 - yearOfEra \ 100)
    local shifted = (5 * dayOfYear + 2) \ 153
    local day = dayOfYear - (153 * shifted + 2) \ 5 + 1
    local month = shifted + 3
    local year = yearOfEra + era * 400
    if month > 12
        month -= 12
        year += 1
    end
    local minutes = seconds % 86400 \ 60
    return string["format"]("%d-%02d-%02d %02d:%02d", year, month, day, minutes \ 60, minutes % 60)
end

@@ Seconds that local time is ahead of the world's. Asked of the system, once.
function novelZone()
    if novelZoneKnown == not
        local ok, ahead = pcall(novelAskZone)
        novelZoneKnown = 0
        if ok and typeOf(ahead) == "number"
            novelZoneKnown = ahead
        end
    end
    return novelZoneKnown
end

function novelAskZone()
    if fastForward
        return 0
    end
    if VESPER_WINDOWS_ENABLED
        local said = Vesper["capture"]("reg query HKLM\\SYSTEM\\CurrentControlSet\\Control\\TimeZoneInformation /v ActiveTimeBias")
        local digits = string["match"](said, "re:0x([0-9a-fA-F]+)")
        local high = toNumber(string["sub"]("00000000" + digits, -8, -5), 16)
        local low = toNumber(string["sub"](digits, -4), 16)
        if high > 32767
            high -= 65536
        end
        return -(high * 65536 + low) * 60
    end
    local sign, hours, minutes = string["match"](Vesper["capture"]("date +%z"), "re:([-+])([0-9][0-9])([0-9][0-9])")
    local ahead = toNumber(hours) * 3600 + toNumber(minutes) * 60
    if sign == "-"
        return -ahead
    end
    return ahead
end

function novelIsThere(path)
    local file = io["open"](path, "r")
    if file
        file["close"]()
        return true
    end
    return false
end
