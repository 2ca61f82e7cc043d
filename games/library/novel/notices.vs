@@ Short notes to the player, over everything else: what is missing, what was saved.

NOVEL_NOTE_FRAMES = 110
novelNotes = []
novelMissing = []

function novelTell(text)
    push(novelNotes, {text = text, age = 0})
end

@@ What is missing is told once; the game goes on without it.
function novelTellMissing(text)
    if not contains(novelMissing, text)
        push(novelMissing, text)
        novelTell(text + " " + novelSay("The game goes on without it."))
    end
end

@@ One at a time, sliding in from above and out again.
function novelDrawNotes()
    if #novelNotes == 0
        return not
    end
    local note = novelNotes[1]
    if note["w"] == not
        novelPaintNote(note)
    end
    local slide = math["min"](note["age"] * 6, 44) - math["max"](0, note["age"] - NOVEL_NOTE_FRAMES + 8) * 6
    local x = (VESPER_SCREEN_X - note["w"]) \ 2
    novelBlit(note["panel"], x - 18, slide - 38)
    novelBlit(note["picture"], x, slide - 32)
    note["age"] += 1
    if note["age"] > NOVEL_NOTE_FRAMES
        vesperKillSurface(note["picture"])
        vesperKillSurface(note["panel"])
        erase(novelNotes, 1)
    end
    novelDirty = true
end

function novelPaintNote(note)
    note["picture"], note["w"], note["h"] = novelTextPicture(note["text"], "small", "paper")
    if note["picture"] == not
        @@ Without a font the words have been drawn beforehand, where the game has such a picture.
        note["w"] = 0
        note["h"] = 0
        if novelLook["noFonts"] != not and novelIsThere(append + "/" + novelLook["noFonts"])
            note["picture"], note["h"], note["w"] = Plush["loadPNG"](append + "/" + novelLook["noFonts"])
        end
    end
    note["panel"] = novelMakePanel(note["w"] + 36, note["h"] + 14, "note")
end
