@@ Screens: the story and what lies over it. Screens that lie over others are stacked; Escape goes back by one.
@@ Each has an opener, which puts its words and items, and a stepper, which is called for every frame.

novelScreen = ""
novelStack = []
novelOpeners = {}
novelSteppers = {}
novelHeld = not

function novelShow(name)
    novelScreen = name
    novelRow = not
    novelClearScreen()
    novelGuardItems(0)
    novelOpeners[name]()
    novelDirty = true
end

@@ A screen of its own, with nothing below it.
function novelShowAlone(name)
    novelStack = []
    novelDropHeld()
    novelShow(name)
end

function novelDropHeld()
    vesperKillSurface(novelHeld)
    novelHeld = not
end

@@ Lays a screen over what is there, which is held as a dimmed picture.
function novelLay(name)
    if #novelStack == 0
        novelDropHeld()
        novelDropCurtain()
        novelDrawStage()
        novelHeld = novelFrameCopy()
        novelDim(novelHeld, 150)
        novelTakeThumbnail()
    end
    push(novelStack, {screen = novelScreen, focus = novelFocus})
    novelShow(name)
end

@@ Back to the screen below, its item picked as it was.
function novelBack(item)
    if #novelStack == 0
        return not
    end
    local below = pop(novelStack)
    if #novelStack == 0
        novelDropHeld()
    end
    novelShow(below["screen"])
    if #novelStack > 0 or novelScreen != "read"
        novelFocusOn(math["min"](below["focus"], #novelItems))
    end
end

@@ The same screen once more, after something on it changed.
function novelShowAgain()
    local focus = novelFocus
    novelShow(novelScreen)
    novelFocusOn(math["min"](focus, #novelItems))
end

function novelHead(text)
    novelPutText(text, "head", "gold", VESPER_SCREEN_X \ 2, 40, "middle")
end

function novelStepMenu()
    if novelPressed["menu"]
        novelBack()
    else
        novelStepItems()
    end
end

@@ A question before something is lost. `act` is called when the answer is yes.
function novelAsk(question, act, argument)
    novelQuestion = {text = question, act = act, argument = argument}
    novelLay("ask")
end

function novelOpeners["ask"]()
    local wrapped, lines = novelWrap(novelQuestion["text"], "words", 560)
    local high = lines * novelLineHeight("words")
    novelPut(novelMakePanel(640, high + 150, "note"), 160, 200 - high \ 2)
    novelPutText(wrapped, "words", "paper", VESPER_SCREEN_X \ 2, 226 - high \ 2, "middle")
    novelAddItem({say = novelSay("Yes"), x = 270, y = 270 + high \ 2, w = 200, act = novelAnswerYes})
    novelAddItem({say = novelSay("No"), x = 490, y = 270 + high \ 2, w = 200, act = novelBack})
    novelRow = 1
    novelGuardItems(NOVEL_GUARD)
    novelFocusOn(2)
end

function novelSteppers["ask"]()
    novelStepMenu()
end

function novelAnswerYes(item)
    local question = novelQuestion
    novelBack()
    question["act"](question["argument"])
end

@@ The menu over the story.
function novelOpeners["menu"]()
    novelHead(novelSay("Menu"))
    local list = [{say = novelSay("Return"), act = novelBack}, {say = novelSay("History"), act = novelLayHistory}, {say = novelSay("Save"), act = novelLaySaving}, {say = novelSay("Load"), act = novelLayLoading}, {say = novelSay("Settings"), act = novelLayOptions}, {say = novelSay("Title screen"), act = novelAskForTitle}, {say = novelSay("Quit"), act = novelAskToQuit}]
    novelAddColumn(list, (VESPER_SCREEN_X - 300) \ 2, 116, 300, 54)
    novelFocusOn(1)
end

function novelSteppers["menu"]()
    novelStepMenu()
end

function novelLayHistory(item)
    novelLay("history")
end

function novelLaySaving(item)
    novelSaving = true
    novelSlotPage = math["max"](novelSlotPage, 1)
    novelLay("slots")
end

function novelLayLoading(item)
    novelSaving = false
    novelLay("slots")
end

function novelLayOptions(item)
    novelLay("options")
end

function novelAskForTitle(item)
    novelAsk(novelSay("Back to the title? Your place is kept."), novelLeaveForTitle)
end

function novelLeaveForTitle(argument)
    novelAutosave()
    novelShowTitle()
end

function novelAskToQuit(item)
    novelAsk(novelSay("Quit? Your place is kept."), novelQuit)
end

function novelQuit(argument)
    novelPlaying = false
end
