@@ Keeps a page, edits the story in many ways, and opens the page again.

runFile(Vesper["getPath"]() + "../Resources/scripts/driver.vs")

function line(text)
    return {text = text}
end

function tale(words)
    local entries = []
    for word in novelSplit(words, " ")
        if word[1] == "#"
            push(entries, {id = string["sub"](word, 2, 4), text = string["sub"](word, 2)})
        elseif word == "place:inn"
            push(entries, {place = "inn", cast = ["ann", "", "", ""], set = {lamp = "lit"}, text = "inn"})
        else
            push(entries, line(word))
        end
    end
    return entries
end

@@ Scenes as names and words by turns.
function retell(scenes)
    novelScenes = []
    novelEntries = {}
    novelMarks = {}
    novelLines = {}
    novelPrints = {}
    for i = 1, #scenes, 2
        Novel["scene"](scenes[i], tale(scenes[i + 1]))
    end
end

before = ["one", "place:inn b c d e f #wind-blew h", "two", "p q r"]

function keepAt(word)
    retell(before)
    novelPeople = {ann = {name = "Ann"}}
    novelPlaces = {inn = {}}
    novelBox = not
    novelStart()
    while novelHere()["text"] != word
        novelGoOn()
    end
    novelPresent(1)
    novelKeep("1")
end

function reopen(label, scenes)
    retell(scenes)
    novelNotes = []
    novelMissing = []
    local opened = novelOpen("1")
    local said = "nothing"
    if opened
        said = novelHere()["text"] + " lamp " + (novelVars["lamp"] or "out") + " pages " + #novelPath
    end
    print(label + ": " + said)
    tellNotes()
end

function edit(label, scenes)
    keepAt("e")
    reopen(label, scenes)
end

function runEdits()
    edit("the same", before)
    edit("lines before it", ["one", "place:inn x y b c d e f #wind-blew h", "two", "p q r"])
    edit("lines gone before it", ["one", "place:inn d e f #wind-blew h", "two", "p q r"])
    edit("reworded", ["one", "place:inn b c d E f #wind-blew h", "two", "p q r"])
    edit("reworded with its neighbours", ["one", "place:inn b c D E F #wind-blew h", "two", "p q r"])
    edit("taken out", ["one", "place:inn b c d f #wind-blew h", "two", "p q r"])
    edit("moved within its scene", ["one", "place:inn e b c d f #wind-blew h", "two", "p q r"])
    edit("moved to another scene", ["one", "place:inn b c d f #wind-blew h", "two", "p e q r"])
    edit("scene renamed", ["uno", "place:inn b c d e f #wind-blew h", "two", "p q r"])
    edit("scenes in another order", ["two", "p q r", "one", "place:inn b c d e f #wind-blew h"])
    edit("scene cut in two", ["one", "place:inn b c", "half", "d e f #wind-blew h", "two", "p q r"])
    edit("said once more before", ["one", "place:inn e b c d e f #wind-blew h", "two", "p q r"])
    edit("all but the scene's name", ["one", "u v w", "two", "p q r"])
    edit("scene given up", ["two", "p q r"])
    keepAt("wind-blew")
    reopen("marked and reworded", ["one", "place:inn b c d e f #winter-came h", "two", "p q r"])
    keepAt("h")
    reopen("the last one reworded", ["one", "place:inn b c d e f #wind-blew H", "two", "p q r"])
    keepAt("e")
    novelPlaces = {}
    novelPeople = {}
    reopen("place and person gone", ["one", "b c d e f #wind-blew h", "two", "p q r"])
end

playSteps(["wait 10", runEdits])
