@@ The card at the end of a telling, and the credits.

function openEnding(name)
    dissolve(24)
    endingReached = name
    mode = VESPER_RENDER_EXIT
    endingFrame = 0
    if placeName != endings[name]["place"]
        enterPlace(endings[name]["place"])
        yOffset = CAMERA_DOWN
    end
    showWordsOnly([
        {say = endings[name]["title"], font = headFont, ink = lampGold, y = 170},
        {say = endings[name]["line"], font = tellFont, ink = paper, y = 236},
        {say = "Enter, or a click, for the credits", font = smallFont, ink = dimPaper, y = 470}
    ])
end

@@ The place without anybody in it, darkened, and lines in the middle of it.
function showWordsOnly(lines)
    hideItems()
    for at = PORTRAITS_AT + 1, FIXED
        putEntry(at, nothingThere())
    end
    table["insert"](renderQueue, {type = VESPER_IMAGE, layer = VESPER_LAYER_SUPERGROUND, identifier = "veil", surface = veilCopy(130), x = 0, y = 0, scale = 1, rotation = 0})
    for i, line in ipairs(lines)
        table["insert"](renderQueue, textEntry("line" + i, line["say"], line["font"], line["ink"], 0, line["y"], VESPER_SCREEN_X))
    end
end

@@ The stage kills what stands on it, so it gets a veil of its own.
function veilCopy(alpha)
    return Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 4, 6, 14, alpha)
end

function stepEnding()
    endingFrame += 1
    if endingFrame > 20 and (pressed["go"] or pressed["click"])
        openCredits()
    end
end

CREDITS = [
    {say = "Eleven Minutes Dark", font = headFont, ink = lampGold, y = 70},
    {say = "Story, pictures and sounds were made for this game", font = wordFont, ink = paper, y = 150},
    {say = "and are painted and played by the scripts beside it.", font = wordFont, ink = paper, y = 182},
    {say = "Set in Gentium Book Plus and in Cardo, the runes", font = wordFont, ink = paper, y = 240},
    {say = "in FreeMono: free fonts, all three.", font = wordFont, ink = paper, y = 272},
    {say = "Redwings cross the sea by night, every October.", font = tellFont, ink = lampGold, y = 330},
    {say = "Lights that are put out for them save a great many.", font = tellFont, ink = lampGold, y = 362},
    {say = "Enter, or a click, for the title", font = smallFont, ink = dimPaper, y = 470}
]

function openCredits(item)
    dissolve(20)
    closeHeld()
    mode = VESPER_CREDIT
    endingFrame = 0
    enterPlace("dusk")
    showWordsOnly(CREDITS)
end

function stepCredits()
    endingFrame += 1
    yOffset = math["min"](-250, CAMERA_DOWN + endingFrame)
    if endingFrame > 15 and (pressed["go"] or pressed["click"] or pressed["back"])
        openTitle()
    end
end
