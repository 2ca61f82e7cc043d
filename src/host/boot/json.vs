@@ Tables as text. The encoder writes what `load` reads back as a script; the decoder reads strict JSON.

vesperJsonDecodeSource = ""
vesperJsonDecodeIndex = 1
vesperJsonDecodeLength = 0

function Vesper["jsonEncode"](o)
    if typeOf(o) != "table"
        return toString(o)
    end
    local text = "{ "
    for k, v in pairs(o)
        local key = k
        if typeOf(k) != "number"
            key = "\"" + k + "\""
        end
        text += "[" + key + "] = " + Vesper["jsonEncode"](v) + ","
    end
    return text + "} "
end

function vesperJsonParseError(message)
    error("Vesper.jsonDecode: " + message + " at position " + vesperJsonDecodeIndex)
end

function vesperJsonPeek()
    return string["sub"](vesperJsonDecodeSource, vesperJsonDecodeIndex, vesperJsonDecodeIndex)
end

function vesperJsonSkipWhitespace()
    while vesperJsonDecodeIndex <= vesperJsonDecodeLength
        local byte = string["byte"](vesperJsonDecodeSource, vesperJsonDecodeIndex)
        if byte != 32 and byte != 10 and byte != 13 and byte != 9
            break
        end
        vesperJsonDecodeIndex += 1
    end
end

function vesperJsonUtf8FromCodepoint(code)
    if code < 128
        return string["char"](code)
    end
    if code < 2048
        return string["char"](192 + code \ 64, 128 + code % 64)
    end
    return string["char"](224 + code \ 4096, 128 + code \ 64 % 64, 128 + code % 64)
end

@@ The escape whose backslash was just read; the index stands on its letter.
function vesperJsonParseEscape()
    local letter = vesperJsonPeek()
    local plain = {["\""]: "\"", ["\\"]: "\\", ["/"]: "/", b = string["char"](8), f = string["char"](12), n = "\n", r = "\r", t = "\t"}
    if letter == "u"
        local digits = string["match"](vesperJsonDecodeSource, "re:^[0-9A-Fa-f]{4}", vesperJsonDecodeIndex + 1)
        if not digits
            vesperJsonParseError("invalid unicode escape")
        end
        vesperJsonDecodeIndex += 5
        return vesperJsonUtf8FromCodepoint(toNumber(digits, 16))
    end
    if letter == "" or not contains(plain, letter)
        vesperJsonParseError("invalid escape sequence")
    end
    vesperJsonDecodeIndex += 1
    return plain[letter]
end

function vesperJsonParseString()
    if vesperJsonPeek() != "\""
        vesperJsonParseError("expected string")
    end
    vesperJsonDecodeIndex += 1
    local text = ""
    while vesperJsonDecodeIndex <= vesperJsonDecodeLength
        local run = string["match"](vesperJsonDecodeSource, "re:^[^\"\\\\]+", vesperJsonDecodeIndex)
        if run
            text += run
            vesperJsonDecodeIndex += #run
        elseif vesperJsonPeek() == "\""
            vesperJsonDecodeIndex += 1
            return text
        else
            vesperJsonDecodeIndex += 1
            text += vesperJsonParseEscape()
        end
    end
    vesperJsonParseError("unterminated string")
end

function vesperJsonParseNumber()
    local number = string["match"](vesperJsonDecodeSource, "re:^-?(?:0|[1-9][0-9]*)(?:\\.[0-9]+)?(?:[eE][-+]?[0-9]+)?", vesperJsonDecodeIndex)
    if not number or not (toNumber(number) != not)
        vesperJsonParseError("invalid number")
    end
    vesperJsonDecodeIndex += #number
    return toNumber(number)
end

function vesperJsonParseArray()
    local list = {}
    local count = 0
    vesperJsonDecodeIndex += 1
    vesperJsonSkipWhitespace()
    if vesperJsonPeek() == "]"
        vesperJsonDecodeIndex += 1
        return list
    end
    while true
        local value = vesperJsonParseValue()
        count += 1
        list[count] = value
        vesperJsonSkipWhitespace()
        local sign = vesperJsonPeek()
        if sign != "," and sign != "]"
            vesperJsonParseError("expected , or ] in array")
        end
        vesperJsonDecodeIndex += 1
        if sign == "]"
            return list
        end
    end
end

function vesperJsonParseObject()
    local object = {}
    vesperJsonDecodeIndex += 1
    vesperJsonSkipWhitespace()
    if vesperJsonPeek() == "}"
        vesperJsonDecodeIndex += 1
        return object
    end
    while true
        vesperJsonSkipWhitespace()
        local key = vesperJsonParseString()
        vesperJsonSkipWhitespace()
        if vesperJsonPeek() != ":"
            vesperJsonParseError("expected : after object key")
        end
        vesperJsonDecodeIndex += 1
        local value = vesperJsonParseValue()
        object[key] = value
        vesperJsonSkipWhitespace()
        local sign = vesperJsonPeek()
        if sign != "," and sign != "}"
            vesperJsonParseError("expected , or } in object")
        end
        vesperJsonDecodeIndex += 1
        if sign == "}"
            return object
        end
    end
end

function vesperJsonParseWord(word, value)
    if string["sub"](vesperJsonDecodeSource, vesperJsonDecodeIndex, vesperJsonDecodeIndex + #word - 1) != word
        vesperJsonParseError("unexpected token")
    end
    vesperJsonDecodeIndex += #word
    return value
end

function vesperJsonParseValue()
    vesperJsonSkipWhitespace()
    local first = vesperJsonPeek()
    if first == "{"
        return vesperJsonParseObject()
    elseif first == "["
        return vesperJsonParseArray()
    elseif first == "\""
        return vesperJsonParseString()
    elseif first == "t"
        return vesperJsonParseWord("true", true)
    elseif first == "f"
        return vesperJsonParseWord("false", false)
    elseif first == "n"
        return vesperJsonParseWord("null", not)
    elseif first == "-" or string["match"](first, "%d")
        return vesperJsonParseNumber()
    end
    vesperJsonParseError("unexpected token")
end

@@ One decode at a time: the cursor is global.
function Vesper["jsonDecode"](jsonString)
    if typeOf(jsonString) != "string"
        error("Vesper.jsonDecode expects a JSON string")
    end
    vesperJsonDecodeSource = jsonString
    vesperJsonDecodeIndex = 1
    vesperJsonDecodeLength = #jsonString
    local value = vesperJsonParseValue()
    vesperJsonSkipWhitespace()
    if vesperJsonDecodeIndex <= vesperJsonDecodeLength
        vesperJsonParseError("unexpected trailing data")
    end
    if typeOf(value) != "table"
        vesperJsonParseError("root value must be object or array")
    end
    return value
end
