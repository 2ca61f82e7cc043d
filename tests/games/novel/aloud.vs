@@ What is said while the game is read by ear, and what is copied.

runFile(Vesper["getPath"]() + "../Resources/scripts/driver.vs")

canSpeak = true
function Metal["speak"](text, language)
    print("said in " + (language or "any") + ": " + novelReplace(text, "\n", " | "))
    return canSpeak
end

function Metal["copyText"](text)
    print("copied: " + novelReplace(text, "\n", " | "))
    return true
end

function loseVoice()
    canSpeak = false
end

function under()
    mouseX = 400
    mouseY = 350
end

function away()
    mouseX = -1
    mouseY = -1
end

function listen()
    settings["readAloud"] = true
end

function mark(text)
    print("-- " + text)
end

function markTitle()
    mark("title, asked for")
end

function markPages()
    mark("by itself: pages, choices by arrow and mouse")
end

function markMenus()
    mark("menus, sliders, slots")
end

function markHistory()
    mark("history")
end

function markAuto()
    mark("turned by themselves")
end

function tellWaited()
    print("at: " + novelHere()["text"])
end

playSteps([
    markTitle, "wait 20", "v", "c", tellNotes, listen,
    markPages, "return", "wait 4", "return", "return", "return", "return", "return", "return", "wait 20", "down", "v", under, "wait 2", away, "up",
    markMenus, "escape", "down", "down", "return", "wait 4", "down", "down", "down", "down", "escape",
    "down", "down", "return", "wait 2", "down", "right", "down", "down", "down", "down", "down", "down", "left", "escape", "escape", "wait 2",
    markHistory, "l", "up", "escape", "wait 20", "down", "return", "wait 2",
    markAuto, "a", "wait 200", tellWaited, loseVoice, "v", "v", tellNotes
])
