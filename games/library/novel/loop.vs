@@ The frame loop. Everything goes by frames, so the same keys give the same pictures; what did not change is not
@@ drawn again.

NOVEL_FRAME_MS = 33
novelFrame = 0
novelPlaying = true
novelDirty = true
novelGame = {}
novelCurtain = not
novelCurtainLeft = 0
novelCurtainLength = 1

@@ A dissolve: the frame as it was, over the frame as it is, ever thinner. A box that stays up keeps its place:
@@ words that dissolve into words cannot be read.
function novelDissolve(length, aroundBox)
    novelDropCurtain()
    novelCurtain = novelFrameCopy()
    novelCurtainAround = aroundBox
    novelCurtainLength = length
    novelCurtainLeft = length
end

function novelDropCurtain()
    vesperKillSurface(novelCurtain)
    novelCurtain = not
    novelCurtainLeft = 0
end

function novelDrawCurtain()
    if novelCurtainLeft == 0
        return not
    end
    if novelThinner == not
        novelThinner = Plush["compileShader"]("a = level")
    end
    local share = novelCurtainLeft / novelCurtainLength
    Plush["shader"](novelCurtain, novelThinner, {level = share * share * (3 - 2 * share)}, 1, true)
    if novelCurtainAround and novelBox != not
        local y = novelBox["y"]
        local low = NOVEL_BOX_X + NOVEL_BOX_WIDE
        novelBlitCurtain(0, 0, VESPER_SCREEN_X, y - 22)
        novelBlitCurtain(0, y - 22, 84, 22)
        novelBlitCurtain(320, y - 22, VESPER_SCREEN_X - 320, 22)
        novelBlitCurtain(0, y, NOVEL_BOX_X, NOVEL_BOX_LOW - y)
        novelBlitCurtain(low, y, VESPER_SCREEN_X - low, NOVEL_BOX_LOW - y)
    else
        novelBlitCurtain(0, 0, VESPER_SCREEN_X, VESPER_SCREEN_Y)
    end
    novelCurtainLeft -= 1
    novelDirty = true
    if novelCurtainLeft == 0
        novelDropCurtain()
    end
end

function novelBlitCurtain(x, y, w, h)
    Plush["blitImageRect"](VESPER_FRAMEBUFFER, novelCurtain, x, y, w, h, x, y, true, 1)
end

@@ Whether a game is being read, be it under a menu.
function novelIsReading()
    if novelScreen == "read"
        return true
    end
    return #novelStack > 0 and novelStack[1]["screen"] == "read"
end

function novelDraw()
    novelDirty = false
    if #novelStack > 0
        Plush["blitImage"](VESPER_FRAMEBUFFER, novelHeld, 0, 0, false, 1, 0)
    else
        novelDrawStage()
        if novelScreen == "read"
            novelDrawBox()
        end
    end
    novelDrawItems()
    novelDrawState()
    novelDrawCurtain()
    novelDrawNotes()
    Metal["renderImage"](VESPER_FRAMEBUFFER)
end

@@ A word in the corner while pages turn by themselves.
function novelDrawState()
    if novelScreen != "read" or not (novelAuto or novelSkip)
        return not
    end
    local word = novelSay("Auto")
    if novelSkip
        word = novelSay("Skip")
    end
    local picture, w, h = novelTextPicture(word + " ››", "small", "paper")
    novelBlit(novelPanel(w + 28, h + 10, "note"), 16, 12)
    novelBlit(picture, 30, 17)
    vesperKillSurface(picture)
end

function novelWaitForFrame()
    if not fastForward
        local spent = Vesper["getClock"]()
        if spent < NOVEL_FRAME_MS
            Vesper["sleep"](NOVEL_FRAME_MS - spent)
        end
        Vesper["getClock"]()
    end
end

function novelStepFrame()
    novelFrame += 1
    novelReadInput()
    novelAloudKeys()
    novelSteppers[novelScreen]()
    novelStepFading()
    if novelDirty or #novelNotes > 0
        novelStepAloud()
    end
    if novelDirty or #novelNotes > 0 or novelCurtainLeft > 0
        novelDraw()
    end
    Metal["forceUpdate"]()
end

@@ Plays a game: `name`, the lines of the `title`, its `place` and `music`, `credits` and their place. Until the player leaves or the
@@ window's button is pressed.
function Novel["play"](game)
    novelGame = game
    local faults = novelFaults()
    if #faults > 0
        error("Novel: the story has faults:\n" + table["concat"](faults, "\n"))
    end
    if novelTelling
        novelGame = game
        return not
    end
    local hasWindow = false
    if Metal
        hasWindow = Metal["spawnWindow"](game["name"], VESPER_SCREEN_X, VESPER_SCREEN_Y)
    end
    if not hasWindow
        print(game["name"] + " cannot open a window here.")
        error("no window")
    end
    novelMendSettings()
    novelSetLanguage(settings["language"])
    novelApplyScaling()
    novelOpenFonts()
    novelTakeRead()
    novelApplyLoudness()
    novelShowTitle()
    while novelPlaying and not Metal["checkClose"]()
        novelStepFrame()
        novelWaitForFrame()
    end
    novelAutosave()
    novelKeepSettings()
    novelKeepRead()
    novelLeave()
end

function novelLeave()
    novelHush()
    Audio["clear"]()
    novelClearScreen()
    novelDropBox()
    novelDropBar()
    novelLeavePlace()
    novelDropPanels()
    novelDropHeld()
    novelDropCurtain()
    novelCloseFonts()
    Metal["killWindow"]()
end
