@@ Slots, quick save, autosaves, what is asked, what is damaged, and the title's way back.

runFile(Vesper["getPath"]() + "../Resources/scripts/driver.vs")

function states()
    local said = ""
    for slot in ["auto", "older", "quick", "1", "2"]
        local state = novelSlotState(slot)
        said += " " + slot + " " + state
    end
    print("slots:" + said)
end

function damage()
    local path = novelSavePath("2")
    Vesper["replaceFile"](path, novelReplace(vesperContentsIfPresent(path), "panes", "pains"))
    states()
    print(novelOpen("2"), novelNewest())
    tellNotes()
end

function cutShort()
    local text = vesperContentsIfPresent(novelSavePath("1"))
    for keep in [0, 1, 20, #text \ 2, #text - 1]
        Vesper["replaceFile"](novelSavePath("2"), string["sub"](text, 1, keep))
        local state = novelSlotState("2")
        print(keep == #text - 1, state)
    end
end

@@ A body that fits its checksum but makes no sense.
function forge(body)
    local header = novelSplit(vesperContentsIfPresent(novelSavePath("1")), "\n")[2]
    local text = header + "\n" + body + "\n"
    Vesper["replaceFile"](novelSavePath("2"), Vesper["checksum"](text) + "\n" + text)
    novelNotes = []
    local opened = novelOpen("2")
    print("forged", opened, novelHere()["text"])
    tellNotes()
end

function forgeMany()
    local good = novelSplit(vesperContentsIfPresent(novelSavePath("1")), "\n")[3]
    for body in ["", "3", "{}", "[]", "{\"name\": 5}", "{\"name\": \"x\", \"scene\": \"y\"}", string["rep"]("[", 5000), novelReplace(good, "\"vars\": 1", "\"vars\": 9"), novelReplace(good, "\"cast\": \"", "\"cast\": 7, \"x\": \""), novelReplace(good, "\"coins\": 3", "\"coins\": {}"), novelReplace(good, "\"who\": \"\"", "\"who\": null")]
        forge(body)
    end
end

function forgetSaves()
    for slot in ["auto", "older", "quick", "1", "2"]
        os["remove"](novelSavePath(slot))
    end
end

function toTitle()
    novelShowTitle()
end

function closeWindow()
    novelAutosave()
    novelAt = not
    novelPath = []
    novelVars = {}
    novelShowTitle()
end

function tellHeader()
    local state, header = novelSlotState("1")
    print(header["line"], novelDate(header["seconds"]) > "2023-11-14", novelIsThere(novelPicturePath("1")))
end

@@ Kept small and shown whole; those of earlier versions, which were whole pictures, are shown as they are.
function tellThumbnails()
    local kept = novelReadPicture(novelPicturePath("1"))
    local shown = novelReadThumbnail(novelPicturePath("1"))
    print("thumbnail", Plush["imageSize"](kept), Plush["imageSize"](shown))
    local dusk = Plush["createImage"](192, 109, 40, 60, 120, 255)
    Plush["blitImage"](dusk, Plush["createImage"](96, 60, 230, 150, 60, 255), 0, 0, false, 1, 0)
    local back = novelUnpacked(novelPacked(dusk))
    print(Plush["getPixel"](back, 20, 20), Plush["getPixel"](back, 191, 108))
    Plush["saveImage"](novelPicturePath("1"), dusk)
    print(Plush["imageSize"](novelReadThumbnail(novelPicturePath("1"))))
end

playSteps([
    "wait 20", tellScreen, states, "return", "return", "return", tellPage,
    @@ Slot 1 is empty and taken at once; the second time it is asked about, and No is the answer at hand.
    "escape", "down", "down", "return", tellScreen, "wait 2", "down", "return", states, tellHeader, tellThumbnails, "return", "wait 14", tellScreen, "return", tellScreen, "escape", "escape", tellPage,
    "q", states, "return", "return", "return", "wait 16", "1", tellPage, states,
    @@ The quick save is loaded after a question; what was left stays in the autosave.
    "o", "wait 14", tellScreen, "left", "return", tellPage, tellVars, toTitle, "wait 20", tellScreen,
    "return", "wait 10", tellPage, tellVars, closeWindow, "wait 20", "return", "wait 10", tellPage, tellVars,
    "escape", "up", "up", "return", "wait 14", tellScreen, "left", "return", "wait 20", tellScreen, "down", "return", "wait 10", states,
    "return", "return", "escape", "down", "down", "return", "down", "right", "return", damage, cutShort, forgeMany,
    toTitle, forgetSaves, toTitle, "wait 20", tellScreen
])
