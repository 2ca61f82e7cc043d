@@ Keeps a page, opens it again, then changes what was kept.

function said()
    return notes[#notes]["text"]
end

function change(path)
    local text = Vesper["contents"](path)
    Vesper["replaceFile"](path, text + " ")
end

function act()
    if frame == 2
        print(stateOfSlot(2), openGame(2), said())
        beginStory()
    elseif frame == 4
        memory["told"] = true
        turnTo(25)
        keepGame(2)
        print(stateOfSlot(2), remembers("told"), said())
        beginStory()
    elseif frame == 6
        openGame(2)
        print(pages[pagenum]["scene"], remembers("told"), remembers("asked"), mode)
        beginStory()
        change(vesperSavePath(4))
        print(stateOfSlot(2), openGame(2), said())
        keepGame(2)
        change(storyPath(2))
        print(stateOfSlot(2), openGame(2), said())
        keepGame(3)
        local text = replaceAll(storyText(), placeName, "nowhere")
        Vesper["replaceFile"](storyPath(3), text)
        Vesper["replaceFile"](storyPath(3) + ".sum", toString(Vesper["checksum"](text)))
        print(stateOfSlot(3), openGame(3), said())
    elseif frame == 12
        print(pages[pagenum]["scene"])
        playing = false
    end
end

realUpdate = Metal["updateInput"]
function Metal["updateInput"]()
    realUpdate()
    act()
end
runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
