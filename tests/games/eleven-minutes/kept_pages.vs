@@ Opens pages that the first edition kept: the boot library's save with a page's number, and a record beside it.

fastForward = true

function keepAsOnce(slot, page, scene, place, cast, chosen)
    local save = "pagenum = " + page + "\nloadOffset = 0\noldAudio = 0\nsaveslot = " + slot + "\nmode = 1\nlatched = false\n"
    local story = "{\"scene\": \"" + scene + "\", \"place\": \"" + place + "\", \"cast1\": \"\", \"cast2\": \"" + cast + "\", \"cast3\": \"\", \"cast4\": \"\", \"chose " + chosen + "\": true}\n"
    local stem = novelVolatile + "story" + slot + ".json"
    Vesper["replaceFile"](vesperSavePath(slot * 2), save)
    Vesper["replaceFile"](vesperSavePath(slot * 2 + 1), toString(Vesper["checksum"](save)))
    Vesper["replaceFile"](stem, story)
    Vesper["replaceFile"](stem + ".sum", toString(Vesper["checksum"](story)))
end

function open(slot)
    local opened = novelOpen(slot)
    local said = ""
    if opened
        said = novelShortened(novelTextOf(novelHere()), 30) + " " + novelPlace + " " + novelCast[2] + " " + novelJson(novelVars)
    end
    print(slot, opened, said)
    for note in novelNotes
        print(note["text"])
    end
    novelNotes = []
end

function act()
    if novelFrame == 4
        keepAsOnce(2, 25, "library", "library", "tobias", "told")
        novelShowTitle()
        print(novelItems[1]["say"])
        open("2")
        novelStepBack()
        open("1")
        keepAsOnce(3, 900, "library", "library", "tobias", "told")
        open("3")
        Vesper["replaceFile"](vesperSavePath(4), "pagenum = 1\n")
        open("2")
        keepAsOnce(2, 8, "lighthouse", "the moon", "nobody", "asked")
        open("2")
        @@ Kept anew, the slot is of today's form.
        local kept = novelKeep("2")
        local state = novelSlotState("2")
        print(kept, state)
        open("2")
        novelPlaying = false
    end
end

realUpdate = Metal["updateInput"]
function Metal["updateInput"]()
    realUpdate()
    act()
end
runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
