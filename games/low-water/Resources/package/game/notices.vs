@@ What is told to the player: one text at a time at the foot of the picture. Short ones go by themselves.

TOLD_WIDE = 720
told = []
toldMissing = 0

function tell(text, ink)
    push(told, {text = text, age = 0, ink = ink or paper})
end

@@ Nothing said twice in a row.
function tellOnce(text, ink)
    if #told == 0 or told[#told]["text"] != text
        tell(text, ink)
    end
end

function forgetTold()
    told = []
    dropEntries("told")
end

function showTold(one)
    dropEntries("told")
    local lines = evenly(one["text"], tellFont, TOLD_WIDE)
    local high = #lines * 30 + 22
    local top = VESPER_SCREEN_Y - high - 26
    addEntry(pictureEntry("told", fadedPanel(VESPER_SCREEN_X - 140, high), VESPER_LAYER_SUPERGROUND, 70, top))
    for i, line in ipairs(lines)
        addText("told", line, tellFont, one["ink"], 70, top + 8 + (i - 1) * 30, VESPER_SCREEN_X - 140)
    end
    one["length"] = 60 + #one["text"] * 13 \ 10
end

panelShader = Plush["compileShader"]("local side = min(x, width - 1 - x) / 150\nlocal tall = min(y, height - 1 - y) / 12\nlocal s = clamp(side, 0, 1)\nlocal t = clamp(tall, 0, 1)\nr = 0.02\ng = 0.05\nb = 0.08\na = 0.72 * s * s * (3 - 2 * s) * t * t * (3 - 2 * t)")

function fadedPanel(w, h)
    local panel = Plush["createImage"](w, h, 0, 0, 0, 255)
    Plush["modifyImage"](panel, panelShader)
    return panel
end

function stepTold()
    while toldMissing < #missing
        toldMissing += 1
        tell(missing[toldMissing] + " The game goes on without it.")
    end
    if #told == 0
        return not
    end
    local one = told[1]
    if one["age"] == 0
        showTold(one)
    end
    one["age"] += 1
    local hurried = #told > 1 and one["age"] > one["length"] * 2 \ 3
    if one["age"] > one["length"] or hurried
        table["remove"](told, 1)
        dropEntries("told")
    end
end
