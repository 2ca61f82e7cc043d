@@ The title: the lake by night, with the tower standing out of it.

LAKE = 44
TITLE_SPOT = [205, 372, -2.02]

function openTitle()
    mode = VESPER_MENU_MAIN
    hideItems()
    hideHud()
    forgetTold()
    dropEntries("title")
    darkenHomes()
    night = {home = [], told = {}}
    lampsSeen = []
    lampStates = []
    creaturesSeen = []
    showPlace("village")
    lakeTexture = "still"
    setTide(LAKE)
    lanternLit = false
    novelPlayMusic("lake")
    viewFade = 0.0
    addText("title", "Low Water", titleFont, paper, 64, 62, not)
    addText("title", "one night in Nether Alder", tellFont, dimPaper, 70, 164, not)
    addText("title", "Arrows or W A S D, Enter and Space. Escape pauses, H helps.", smallFont, dimPaper, 70, 500, not)
    TITLE_ITEMS = [{say = "Begin", act = beginNight}, {say = "How to walk", act = openHelp}, {say = "Settings", act = openOptions}, {say = "Leave", act = leaveGame}]
    if stateOfSave() != "empty"
        table["insert"](TITLE_ITEMS, 1, {say = "Go on", act = goOn})
    end
    showItems(TITLE_ITEMS, 66, 230, 250)
end

function closeTitle()
    hideItems()
    dropEntries("title")
end

@@ Over the water, looking at the tower, where a small light goes about; all drifts a little.
function stepTitle()
    playerX = TITLE_SPOT[1] + math["sin"](frame * 0.006) * 6
    playerY = TITLE_SPOT[2]
    playerTurn = TITLE_SPOT[3] + math["sin"](frame * 0.005) * 0.03
    playerTilt = 0.02
    eyeHeight = LAKE + 9 + math["sin"](frame * 0.03) * 0.5
    viewFade = math["min"](1.0, viewFade + 0.05)
    local c = math["sin"](frame * 0.004)
    lampsSeen = [{name = "gold", ink = "gold", place = "village", far = 999, x = 138 + c * 14, y = 212 + c * 8, z = LAKE + 6 + math["sin"](frame * 0.05) * 0.7}]
    if pressed["back"] and items[1]["sure"]
        backToTitle()
    elseif pressed["back"] and focus == #items
        leaveGame()
    elseif pressed["back"]
        focusOn(#items)
    else
        stepItems()
    end
end

@@ The night's own numbers come from when it was begun.
function beginNight(item)
    if stateOfSave() == "good" and not item["sure"]
        tellOnce("A night is kept already. To begin anew lets it go.")
        showItems([{say = "Begin anew", act = beginNight, sure = true}, {say = "Go on", act = goOn}, {say = "Back", act = backToTitle}], 66, 230, 250)
        return not
    end
    closeTitle()
    newNight(frame * 7919 % 100000 + 17)
    beginEbb()
end

function backToTitle(item)
    forgetTold()
    showItems(TITLE_ITEMS, 66, 230, 250)
end

function goOn(item)
    local state = stateOfSave()
    if state == "empty"
        tellOnce("No night has been kept here yet.")
        return not
    elseif state == "damaged"
        tellOnce("The night was changed after it was kept, so it stays closed.")
        return not
    end
    finishLearning()
    setTide(BED)
    if not loadNight()
        openTitle()
        tell("This night belongs to another telling.")
        return not
    end
    closeTitle()
    forgetTold()
    mode = VESPER_GAME_TARGET
    viewFade = 1.0
    tell(tally(litCount()))
end

function leaveGame(item)
    playing = false
end
