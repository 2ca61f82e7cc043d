@@ The box at the foot of the picture: a name, the words that come letter by letter, a hint that there is more, and
@@ below it a row of small words for the mouse.

NOVEL_BOX_X = 60
NOVEL_BOX_WIDE = 840
NOVEL_BOX_LOW = 524
NOVEL_BOX_HIGH = 132
NOVEL_BOX_HIGHEST = 440
NOVEL_WORDS_X = 92
NOVEL_WORDS_WIDE = 776

novelBox = not
novelHidden = false

function novelDropBox()
    if novelBox != not
        vesperKillSurface(novelBox["words"])
        vesperKillSurface(novelBox["name"])
        novelBox = not
    end
    novelDirty = true
end

@@ A page's words into a fresh box. Pages that only ask keep the words before them.
function novelFillBox(entry)
    local said = entry
    if entry["text"] == not and entry["runes"] == not
        if novelBox != not
            novelDropSlide()
            return not
        end
        said = novelLastSaid() or entry
    end
    novelDropBox()
    local font = "tell"
    local ink = "paper"
    local text = novelTextOf(said)
    local name = ""
    if said["who"] != not
        font = "words"
        name = novelPersonName(said["who"])
    end
    if said["runes"] != not
        font = "runes"
        ink = "gold"
        text = novelInRunes(said["runes"])
    end
    local wrapped, lines = novelWrap(text, font, NOVEL_WORDS_WIDE)
    if lines * novelLineHeight(font) > NOVEL_BOX_HIGHEST
        font = "small"
        wrapped, lines = novelWrap(text, font, NOVEL_WORDS_WIDE)
    end
    local high = math["max"](NOVEL_BOX_HIGH, lines * novelLineHeight(font) + 40)
    novelBox = {text = wrapped, font = font, ink = ink, shown = 0, length = Vesper["utf8lenSafe"](wrapped), y = NOVEL_BOX_LOW - high, high = high, person = said["who"]}
    if name != ""
        local colour = novelPeople[said["who"]]["ink"] or "paper"
        novelBox["name"], novelBox["nameWide"] = novelTextPicture(name, "name", colour)
    end
    if font == "runes" or NOVEL_TEXT_SPEEDS[settings["textSpeed"]] == "at once" or novelMaySkip()
        novelFinishBox()
    end
end

@@ The words that stood in the box before a page that only asks.
function novelLastSaid()
    for number = #novelPath, 1, -1
        local position = novelLines[novelPath[number]["name"]]
        if position != not
            local entry = novelEntryAt(position)
            if entry["text"] != not
                return entry
            end
        end
    end
    return not
end

function novelDropSlide()
    novelBox["shown"] = novelBox["length"]
    novelPaintWords()
end

@@ The boot library's runes are positions of a rune font. The real ones are letters of their own.
NOVEL_RUNES = [["à", "ᚪ"], ["b", "ᛒ"], ["ć", "ᚳ"], ["đ", "ᛞ"], ["é", "ᛖ"], ["ƒ", "ᚠ"], ["ğ", "ᚷ"], ["ħ", "ᚻ"], ["í", "ᛁ"], ["ĵ", "ᛄ"], ["ķ", "ᛣ"], ["ľ", "ᛚ"], ["ṁ", "ᛗ"], ["ń", "ᚾ"], ["ó", "ᚩ"], ["ṗ", "ᛈ"], ["ǫ", "ᛢ"], ["ŕ", "ᚱ"], ["ş", "ᛋ"], ["ţ", "ᛏ"], ["ú", "ᚢ"], ["ṽ", "ᚡ"], ["ŵ", "ᚹ"], ["ẋ", "ᛪ"], ["ý", "ᚣ"], ["ž", "ᛉ"], ["Þ", "ᚦ"], ["Ṅ", "ᛝ"], ["Ŝ", "ᛥ"], ["*", " ᛫ "]]

function novelInRunes(text)
    startTag = "<rune>"
    endTag = "</rune>"
    local line = Vesper["processRunes"]("<rune>" + text + "</rune>")
    for pair in NOVEL_RUNES
        line = novelReplace(line, pair[1], pair[2])
    end
    return line
end

function novelBoxSlides()
    return novelBox != not and novelBox["shown"] < novelBox["length"]
end

function novelFinishBox()
    novelBox["shown"] = novelBox["length"]
    novelPaintWords()
    novelRead[novelHere()["name"]] = true
end

function novelPaintWords()
    vesperKillSurface(novelBox["words"])
    local part = Vesper["utf8prefixSafe"](novelBox["text"], novelBox["shown"])
    novelBox["words"], novelBox["wide"] = novelTextPicture(part, novelBox["font"], novelBox["ink"])
    novelDirty = true
end

function novelStepBox()
    if novelBoxSlides()
        novelBox["shown"] = math["min"](novelBox["length"], novelBox["shown"] + settings["textSpeed"])
        novelClick("tick")
        if novelBox["shown"] == novelBox["length"]
            novelFinishBox()
        else
            novelPaintWords()
        end
    end
end

function novelDrawBox()
    if novelBox == not or novelHidden
        return not
    end
    local y = novelBox["y"]
    novelBlit(novelPanel(NOVEL_BOX_WIDE, novelBox["high"], "box"), NOVEL_BOX_X, y)
    if novelBox["name"] != not
        local wide = math["max"](196, novelBox["nameWide"] + 44)
        novelBlit(novelPanel(wide, 36, "plate"), 84, y - 22)
        novelBlit(novelBox["name"], 84 + (wide - novelBox["nameWide"]) \ 2, y - 16)
    end
    if novelBox["font"] == "runes"
        novelBlit(novelBox["words"], (VESPER_SCREEN_X - (novelBox["wide"] or 0)) \ 2, y + 40)
    else
        novelBlit(novelBox["words"], NOVEL_WORDS_X, y + 26)
    end
    novelDrawHint()
    novelDrawBar()
end

@@ A small arrow, which rises and sinks unless motion is unwanted.
function novelDrawHint()
    if novelBoxSlides() or novelHere()["choice"] != not
        return not
    end
    novelBlit(novelHintPicture(), 850, 494 + novelHintRise())
end

function novelHintRise()
    if settings["lessMotion"]
        return 0
    end
    return math["floor"](math["sin"](novelFrame * 0.16) * 2.5 + 0.5)
end

function novelHintPicture()
    if novelHint == not
        novelHint = Plush["createImage"](20, 14, 0, 0, 0, 0)
        Plush["shader"](novelHint, "local d = 11 - y - abs(x - 9.5) * 1.25\nr = 1\ng = 0.88 - y * 0.03\nb = 0.66 - y * 0.03\na = clamp(d, 0, 1) * clamp(y - 0.5, 0, 1)", {}, 1, true)
    end
    return novelHint
end

@@ The row of words below the box: what they say and the action that they stand for.
NOVEL_BAR = [["Back", "left"], ["History", "history"], ["Auto", "auto"], ["Skip", "skip"], ["Save", "keep"], ["Load", "open"], ["Menu", "menu"]]
novelBarWords = []
novelBarUnder = 0

function novelMakeBar()
    novelDropBar()
    local x = NOVEL_BOX_X + NOVEL_BOX_WIDE - 16
    for i = #NOVEL_BAR, 1, -1
        local text = novelSay(NOVEL_BAR[i][1])
        local dim, w, h = novelTextPicture(text, "tiny", "dim")
        local lit = novelTextPicture(text, "tiny", "gold")
        x -= w
        table["insert"](novelBarWords, 1, {dim = dim, lit = lit, x = x, w = w, action = NOVEL_BAR[i][2]})
        x -= 22
    end
end

function novelDropBar()
    for word in novelBarWords
        vesperKillSurface(word["dim"])
        vesperKillSurface(word["lit"])
    end
    novelBarWords = []
end

function novelDrawBar()
    if #novelBarWords == 0
        novelMakeBar()
    end
    @@ A shade, so that the words can be read on every ground.
    local first = novelBarWords[1]["x"] - 14
    Plush["fillBox"](VESPER_FRAMEBUFFER, first, NOVEL_BOX_LOW + 1, NOVEL_BOX_X + NOVEL_BOX_WIDE - 2 - first, 18, 9, 8, 10, 24, 150)
    for i, word in ipairs(novelBarWords)
        local picture = word["dim"]
        if i == novelBarUnder or word["action"] == "auto" and novelAuto or word["action"] == "skip" and novelSkip
            picture = word["lit"]
        end
        novelBlit(picture, word["x"], NOVEL_BOX_LOW + 1)
    end
end

@@ A click on the row is the press of its key.
function novelStepBar()
    local under = 0
    if novelMouseY > NOVEL_BOX_LOW - 2
        for i, word in ipairs(novelBarWords)
            if novelMouseX > word["x"] - 9 and novelMouseX < word["x"] + word["w"] + 9
                under = i
            end
        end
    end
    if under != novelBarUnder
        novelBarUnder = under
        novelDirty = true
    end
    if under > 0 and novelPressed["click"]
        novelPressed = {}
        novelPressed[novelBarWords[under]["action"]] = true
    end
end
