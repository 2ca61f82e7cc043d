@@ Text in other tongues: runes between tags, and word books that a game's libraries bring.

@@ Pairs applied in turn, so that a later one sees what an earlier one made: longer spellings first, single
@@ letters behind them, the blank last. The characters are positions of a game's rune font; a game puts its own
@@ two tags in front.
function vesperRuneTable()
    local runes = [["<rune>", ""], ["</rune>", ""], ["\\\\\"", "\""], ["\\\\'", "'"]]
    for i, spelling in ipairs({"eel", "Eel", "eEl", "eeL", "EEl", "EeL", "eEL", "EEL"})
        push(runes, [spelling, "Âl"])
    end
    local families = [["KN", "Ŋ"], ["QU", "Ɋ"]]
    vesperRuneFamilies(runes, families)
    for i, vowel in ipairs({"a", "e", "i", "o", "u"})
        push(runes, ["k" + vowel, "ĸ" + vowel])
        push(runes, ["K" + vowel, "ĸ" + vowel])
        push(runes, ["k" + string["upper"](vowel), "ĸ" + vowel])
        push(runes, ["K" + string["upper"](vowel), "ĸ" + vowel])
    end
    vesperRuneFamilies(runes, [["TH", "Þ"], ["UU", "Ƿ"]])
    push(runes, [" I ", " Ī "])
    vesperRuneFamilies(runes, [["UE", "Ü"], ["NG", "Ṅ"], ["OO", "Ō"], ["AH", "Ā"], ["EA", "Æ"], ["GG", "Ğ"]])
    vesperRuneFamilies(runes, [["ST", "Ŝ"], ["II", "Î"], ["CK", "Č"], ["LL", "Ł"]])
    local letters = "àbćđéƒğħíĵķľṁńóṗǫŕşţúṽŵẋýž"
    for i = 1, 26
        local rune = Vesper["utf8subSafe"](letters, i, i)
        push(runes, [string["char"](96 + i), rune])
        push(runes, [string["char"](64 + i), rune])
    end
    local signs = [["0", "⁰"], ["1", "¹"], ["2", "²"], ["3", "³"], ["4", "⁴"], ["5", "⁵"], ["6", "⁶"], ["7", "⁷"], ["8", "⁸"], ["9", "⁹"], [",", "᛫"], ["%.", "᛬"], ["!", "¡"], ["%?", "¿"], [";", "᛭"], [":", "⁝"], ["%-", "‐"], ["%(", "⟨"], ["%)", "⟩"], ["/", "⁄"], ["&", "⁊"], ["%+", "†"], ["=", "꞊"]]
    for i, sign in ipairs(signs)
        push(runes, sign)
    end
    push(runes, [" ", "*"])
    return runes
end

@@ A spelling in its four forms of case.
function vesperRuneFamilies(runes, families)
    for i, family in ipairs(families)
        local upper = family[1]
        local lower = string["lower"](upper)
        push(runes, [upper, family[2]])
        push(runes, [upper[1] + lower[2], family[2]])
        push(runes, [lower[1] + upper[2], family[2]])
        push(runes, [lower, family[2]])
    end
end

function Vesper["translateRunes"](t)
    if translator == not
        translator = vesperRuneTable()
    end
    for i, word in ipairs(translator)
        t = string["gsub"](t, word[1], word[2])
    end
    return t
end

@@ Replaces each text between the global tags by its translation and drops the tags.
function vesperTranslateTagged(inputString, translate)
    while true
        local open, openEnd = string["find"](inputString, startTag, 1, true)
        if open == not
            return inputString
        end
        local close, closeEnd = string["find"](inputString, endTag, openEnd + 1, true)
        if close == not
            return inputString
        end
        local inner = string["sub"](inputString, openEnd + 1, close - 1)
        inputString = string["sub"](inputString, 1, open - 1) + translate(inner) + string["sub"](inputString, closeEnd + 1)
    end
end

function Vesper["processRunes"](inputString)
    return vesperTranslateTagged(inputString, Vesper["translateRunes"])
end

function Vesper["translateAnglish"](t)
    return t
end

function Vesper["processAnglish"](inputString)
    return inputString
end

function Vesper["processGender"](t)
    if t == not
        return "pages = {}"
    end
    return t
end

function vesperRunLibrary(name)
    local path = Vesper["getPath"]() + "../Libraries/" + name
    local text = vesperContentsIfPresent(path)
    if text == not
        error("Failed to open script file: " + path)
    end
    local chunk = vesperLoadChunkOrError(text, name)
    chunk()
end

@@ For games: brings the word book of Anglish.
function registerAnglish()
    vesperRunLibrary("anglish")
    function Vesper["translateAnglish"](t)
        for i, word in ipairs(wordbook)
            t = string["gsub"](t, word[1], word[2])
        end
        return t
    end
    function Vesper["processAnglish"](inputString)
        return vesperTranslateTagged(inputString, Vesper["translateAnglish"])
    end
end

@@ For games: brings the word book that fits a text to the player.
function registerGenderEngine()
    VESPER_FEMALE = false
    local name = "Kelmora"
    if not VESPERBOOT_ENABLED
        if VESPER_WINDOWS_ENABLED
            name = VESPER_USER_NAME
        else
            name = Vesper["capture"]("id -un")
            local last = string["sub"](name, -1)
            if last == "a" or last == "y" or last == "e"
                VESPER_FEMALE = true
            end
        end
    end
    vesperRunLibrary("gender")
    function Vesper["processGender"](t)
        if t == not
            return "pages = {}"
        end
        for i, word in ipairs(genderbook)
            local search = string["gsub"](word[1], "([%^%$%(%)%%%.%[%]%*%+%-%?])", "%%%1")
            t = string["gsub"](t, search, word[2])
        end
        return t
    end
end
