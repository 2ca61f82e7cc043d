@@ The story on the screen: turning pages, choices, skip and auto.

NOVEL_AUTO_BASE = [70, 42, 24]
NOVEL_AUTO_EACH = [1.5, 0.9, 0.5]
NOVEL_CALM_FRAMES = 3
NOVEL_CHOICE_WIDE = 440
NOVEL_CHOICE_WIDEST = 780
NOVEL_CHOICE_STEP = 54
novelAuto = false
novelSkip = false
novelHurrying = false
novelWaited = 0
novelKnown = false

@@ Whether skipping goes on over this page: it was read before, or all is to be skipped.
function novelMaySkip()
    return (novelSkip or novelHurrying) and novelScreen == "read" and (novelKnown or settings["skipAll"])
end

@@ Shows where the reader is; `length` frames of dissolving where the stage changes.
function novelPresent(length)
    local entry = novelHere()
    novelKnown = novelWasRead()
    local aroundBox = novelBox != not and novelScreen == "read"
    if novelMaySkip()
        length = math["min"](length, 2)
    end
    if novelScene["place"] != novelPlace
        novelDissolve(length, aroundBox)
    elseif novelSceneDiffers()
        novelDissolve(length \ 2, aroundBox)
    end
    local fresh = novelScene["place"] != novelPlace
    novelSetStage(entry["who"])
    if fresh and novelMaySkip()
        novelRestCamera()
    end
    for sound in novelHeard
        novelPlaySound(sound)
    end
    novelHeard = []
    novelFillBox(entry)
    novelShowAlone("read")
end

function novelBegin(item)
    novelKeepOlderAutosave()
    novelBox = not
    if novelStart()
        novelStopHurry()
        novelPresent(16)
    end
end

function novelStopHurry()
    novelAuto = false
    novelSkip = false
    novelWaited = 0
    novelHidden = false
end

@@ Opened whenever the story comes to the front again.
function novelOpeners["read"]()
    novelChoices = false
    novelWaited = 0
    if novelBox == not
        novelFillBox(novelHere())
        novelFinishBox()
    end
end

function novelSteppers["read"]()
    novelStepCamera()
    novelStepAir()
    if novelHidden
        if novelAnyPress()
            novelHidden = false
            novelDirty = true
        end
        return not
    end
    novelStepBar()
    if novelReadCommands()
        return not
    end
    novelStepBox()
    if novelHere()["choice"] != not and not novelBoxSlides() and not novelChoices
        novelShowChoices(novelHere())
    end
    if novelChoices
        novelStepItems()
    elseif novelPressed["go"] or novelPressed["click"]
        novelPressOn()
    else
        novelHurry()
    end
end

@@ What moves by itself. While nothing else does it takes three steps at a time, unless it flies: a picture that stands
@@ is worth few frames.
function novelStepAir()
    if novelBoxSlides() or not novelCameraRests() or novelCurtainLeft > 0 or novelWeatherFlies()
        novelStepWeather()
    elseif novelFrame % NOVEL_CALM_FRAMES == 0
        for i = 1, NOVEL_CALM_FRAMES
            novelStepWeather()
        end
        if novelHintRise() != novelHintRisen
            novelHintRisen = novelHintRise()
            novelDirty = true
        end
    end
end

@@ Keys that work wherever the story is read. True when the rest of the frame is another screen's.
function novelReadCommands()
    local screen = novelScreen
    if novelPressed["menu"]
        novelLay("menu")
    elseif novelPressed["history"] or novelPressed["pageUp"] or novelPressed["wheelUp"] and not novelChoices
        novelLay("history")
    elseif novelPressed["hide"]
        novelHidden = true
        novelDirty = true
        return true
    elseif novelPressed["left"]
        novelStepBack()
        return true
    elseif novelPressed["keep"]
        novelTakeThumbnail()
        novelTellKept(novelKeep("quick"), novelSay("Quick save"))
    elseif novelPressed["open"]
        novelQuickLoad()
        return true
    elseif novelPressed["auto"]
        novelSkip = false
        novelAuto = not novelAuto
        novelWaited = 0
        novelDirty = true
    elseif novelPressed["skip"]
        novelAuto = false
        novelSkip = not novelSkip
        novelDirty = true
        if novelSkip and not novelMaySkip()
            novelTell(novelSay("This page is new. The settings let you skip new ones, too."))
        end
    elseif novelAnyPress() and (novelAuto or novelSkip)
        novelStopHurry()
        novelDirty = true
        return true
    end
    return novelScreen != screen
end

@@ A first press brings all of a page, the next one the page after.
function novelPressOn()
    if not novelCameraRests()
        novelRestCamera()
        novelFinishBox()
    elseif novelBoxSlides()
        novelFinishBox()
    else
        novelTurn()
    end
end

function novelTurn()
    local entry = novelHere()
    if entry["ending"] != not
        novelStopHurry()
        novelAutosave()
        novelOpenEnding(entry["ending"])
    elseif novelGoOn()
        novelPresent(16)
    else
        novelStopHurry()
        novelShowTitle()
    end
end

@@ Back by a page, past choices too.
function novelStepBack()
    novelStopHurry()
    local number = novelPageBefore()
    if number == 0
        novelTell(novelSay("There is nothing before this page."))
    else
        novelReturnTo(number)
    end
end

function novelReturnTo(number)
    if novelBackTo(number)
        novelDropBox()
        novelPresent(10)
        novelRestCamera()
        novelFinishBox()
        return true
    end
    novelTell(novelSay("This page is no longer in the story."))
    return false
end

@@ Skip and auto turn the pages. Both stop where there is a choice, skip also before what is new to the reader.
function novelHurry()
    if novelSkip and not novelMaySkip()
        novelStopHurry()
        novelDirty = true
    elseif novelMaySkip()
        novelWaited += 1
        if novelWaited > 2
            novelTurnHurried()
        end
    elseif novelAuto and not novelBoxSlides() and novelCameraRests()
        novelWaited += 1
        local enough = NOVEL_AUTO_BASE[settings["autoSpeed"]] + novelBox["length"] * NOVEL_AUTO_EACH[settings["autoSpeed"]]
        if novelWaited > math["max"](enough, novelAloudFrames())
            novelTurnHurried()
        end
    end
end

function novelTurnHurried()
    novelWaited = 0
    novelTurn()
end

@@ Choices keep out of people's faces.
function novelChoiceX(width)
    local left = novelCast[1] != "" or novelCast[2] != ""
    local right = novelCast[3] != "" or novelCast[4] != ""
    if left == right
        return (VESPER_SCREEN_X - width) \ 2
    elseif left
        return VESPER_SCREEN_X - width - 28
    end
    return 28
end

@@ Nothing is picked beforehand, and nothing can be for a moment. Long ones have several lines.
function novelShowChoices(entry)
    novelClearItems()
    local options = novelOptions(entry)
    local texts = []
    for option in options
        local text = novelWrap(novelOptionText(entry, option), "item", NOVEL_CHOICE_WIDEST)
        push(texts, text)
    end
    local width = novelWidthFor(texts, NOVEL_CHOICE_WIDE)
    local step = math["min"](NOVEL_CHOICE_STEP, (novelBox["y"] - 40) \ math["max"](#options, 1))
    local y = novelBox["y"] - 16 - (NOVEL_CHOICE_STEP - step)
    for i = #options, 1, -1
        local w, h = novelTextSize(texts[i], "item")
        local high = math["max"](h + 8, math["min"](NOVEL_ITEM_HIGH, step - 4))
        y -= high + math["max"](step - NOVEL_ITEM_HIGH, 2)
        novelAddItem({say = texts[i], option = options[i], x = novelChoiceX(width), y = y, w = width, h = high, act = novelMakeChoice})
    end
    novelTurnItemsRound()
    novelStopHurry()
    novelChoices = true
    novelGuardItems(NOVEL_GUARD)
    novelAutosave()
end

function novelMakeChoice(item)
    local option = item["option"]
    novelClearItems()
    novelChoices = false
    if novelChoose(option)
        novelPresent(16)
    else
        novelShowTitle()
    end
end
