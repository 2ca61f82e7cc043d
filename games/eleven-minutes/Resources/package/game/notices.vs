@@ Short notes to the player, over everything else: what is missing, what was saved.

NOTE_FRAMES = 110
notes = []
toldMissing = 0

function tell(text)
    push(notes, {text = text, age = 0})
end

function tellWhatIsMissing()
    while toldMissing < #missing
        toldMissing += 1
        tell(missing[toldMissing] + " The game goes on without it.")
    end
end

@@ Drawn straight into the frame, since they belong to no scene. One at a time.
function drawNotes()
    tellWhatIsMissing()
    if #notes == 0
        return not
    end
    local note = notes[1]
    if note["surface"] == not
        note["surface"], note["w"], note["h"] = Vesper["buildTextSurface"](note["text"], smallFont, paper)
        if note["surface"] == not
            @@ Without a font the words have been drawn beforehand.
            note["surface"], note["h"], note["w"] = Plush["loadPNG"](picturePath(uiFolder, "no-fonts.png"))
        end
        note["panel"] = Plush["createImage"](note["w"] + 36, note["h"] + 12, 24, 30, 52, 225)
    end
    local slide = math["min"](note["age"] * 6, 44) - math["max"](0, note["age"] - NOTE_FRAMES + 8) * 6
    local x = (VESPER_SCREEN_X - note["w"]) \ 2
    Plush["blitImage"](VESPER_FRAMEBUFFER, note["panel"], x - 18, slide - 36, true, 1, 0)
    if note["surface"] != not
        Plush["blitImage"](VESPER_FRAMEBUFFER, note["surface"], x, slide - 30, true, 1, 0)
    end
    note["age"] += 1
    if note["age"] > NOTE_FRAMES
        vesperKillSurface(note["surface"])
        vesperKillSurface(note["panel"])
        table["remove"](notes, 1)
    end
end
