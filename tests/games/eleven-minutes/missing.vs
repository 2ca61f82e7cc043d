@@ Reads a few pages of a game that lacks some of its files, and prints what the player was told.

realUpdate = Metal["updateInput"]
function Metal["updateInput"]()
    realUpdate()
    if frame == 2
        beginStory()
    elseif frame > 2 and frame < 6
        turnTo(frame - 1)
    elseif frame == 30
        for i, text in ipairs(missing)
            print(text)
        end
        print(#notes > 0 and notes[1]["surface"] != not, string["sub"](pages[pagenum]["say"], 1, 12))
        playing = false
    end
end
runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
