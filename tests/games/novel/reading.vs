@@ Choices, going back past them, history, hiding, skip and auto.

runFile(Vesper["getPath"]() + "../Resources/scripts/driver.vs")

function tellFocus()
    print("picked beforehand: " + (novelFocus != 0))
end

function tellFrameDrawn()
    print("drawn: " + novelDirty)
end

function markFrame()
    began = novelFrame
end

function tellAuto()
    print("auto: " + novelAuto + ", skip: " + novelSkip)
end

function tellWaitedLong()
    print("waited: " + (novelFrame - began > 40))
end

@@ Where the first choice is going to stand.
function restMouse()
    mouseX = 400
    mouseY = 300
end

function moveMouse()
    mouseX = 410
end

function tellUnder()
    print("under the mouse: " + novelItemUnder() + ", picked beforehand: " + (novelFocus != 0))
end

playSteps([
    "wait 20", tellScreen, "return", tellPage, "return", "return", tellPage,
    @@ The words come at once when asked for; the choice then takes nothing for a moment.
    "return", "return", "return", "wait 20", tellPage, tellFocus, "return", tellPage,
    "down", "return", tellPage, tellVars,
    "left", "wait 16", tellPage, tellVars,
    @@ A mouse that rests where a choice appears picks nothing until it moves.
    "left", "wait 16", restMouse, "wait 2", "return", "return", "wait 20", tellPage, tellUnder, "mouse_left", tellUnder, moveMouse, "wait 2", tellUnder, "mouse_left", tellPage, "left", "wait 16",
    "2", tellPage, tellVars,
    "return", "return", "l", tellScreen, "up", "up", "return", tellPage, tellVars,
    "return", tellPage,
    "h", "return", tellPage, "escape", tellScreen, "escape", tellPage,
    "wait 16", "up", "return", tellPage, tellVars,
    "f", "wait 30", tellPage, tellAuto,
    "return", "return", "a", markFrame, "wait 120", tellPage, tellAuto, tellWaitedLong, "left", tellAuto, tellPage
])
