@@ The title: the Point at night, its name, and what there is to do.

TITLE_X = 64

function openTitle()
    dissolve(14)
    closeHeld()
    mode = VESPER_MENU_MAIN
    enterPlace("night")
    yOffset = CAMERA_DOWN
    table["insert"](renderQueue, textEntry("title", "Eleven Minutes", titleFont, paper, TITLE_X, 44, not))
    table["insert"](renderQueue, textEntry("title", "Dark", titleFont, lampGold, TITLE_X, 108, not))
    table["insert"](renderQueue, textEntry("title", "a story for one evening", tellFont, dimPaper, TITLE_X + 4, 188, not))
    table["insert"](renderQueue, textEntry("title", "Arrows and Enter, or the mouse. P pauses.", smallFont, dimPaper, 600, 500, 330))
    local list = [{say = "Begin", act = beginFromTitle}, {say = "Go on reading", act = openLoading}, {say = "Options", act = openOptions}, {say = "Credits", act = openCredits}, {say = "Leave", act = leaveGame}]
    showItems(list, "item", 260, TITLE_X, 246)
end

function beginFromTitle(item)
    beginStory()
end

function leaveGame(item)
    playing = false
end

@@ The camera breathes with the sea.
function stepTitle()
    stepWeather()
    yOffset = CAMERA_DOWN + math["floor"](30 - 30 * math["cos"](frame * 0.018))
    stepItems()
end
