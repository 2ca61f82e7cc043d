@@ Reads a few pages of a game that lacks some of its files, and prints what the player was told.

realUpdate = Metal["updateInput"]
function Metal["updateInput"]()
    realUpdate()
    if novelFrame == 2
        novelBegin()
    elseif novelFrame > 2 and novelFrame < 6
        novelGoOn()
        novelPresent(16)
    elseif novelFrame == 30
        for text in novelMissing
            print(text)
        end
        print(#novelNotes > 0 and novelNotes[1]["picture"] != not, string["sub"](novelHere()["text"], 1, 12))
        novelPlaying = false
    end
end
runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
