@@ Menus that lie over the game: the game's queue is held back, and its place stands dimmed behind them.

heldQueue = not
previousMode = VESPER_GAME_VISUAL_NOVEL

function holdQueue()
    if heldQueue == not
        drawScene()
        heldQueue = renderQueue
        heldChoices = #items > 0
        previousMode = mode
        prevBuffer = frameAsPicture()
    else
        dropSurfaces()
    end
    items = []
    Vesper["clearButtons"]()
    renderQueue = [{type = VESPER_IMAGE, layer = VESPER_LAYER_FRAMEBUFFER, identifier = "held", surface = prevBuffer, x = 0, y = 0, scale = 1, rotation = 0}]
end

@@ The place and its people, without box and menus: those have the uppermost layer to themselves.
function drawScene()
    dropCurtain()
    layers = VESPER_LAYER_FOREGROUND
    Vesper["renderStack"]()
    layers = VESPER_LAYER_SUPERGROUND
end

@@ All but the held frame, which the menus share.
function dropSurfaces()
    for i, entry in ipairs(renderQueue)
        if entry["identifier"] != "held"
            vesperKillSurface(entry["surface"])
        end
    end
end

@@ Back to what was held.
function releaseQueue(item)
    dropSurfaces()
    vesperKillSurface(prevBuffer)
    prevBuffer = not
    renderQueue = heldQueue
    heldQueue = not
    mode = previousMode
    items = []
    Vesper["clearButtons"]()
    if mode == VESPER_MENU_MAIN
        openTitle()
    elseif heldChoices
        hideItems()
    end
end

@@ Gives up what was held, for good.
function closeHeld()
    if heldQueue != not
        dropSurfaces()
        vesperKillSurface(prevBuffer)
        prevBuffer = not
        renderQueue = heldQueue
        heldQueue = not
    end
end

function menuHead(text)
    table["insert"](renderQueue, textEntry("head", text, headFont, lampGold, 0, 62, VESPER_SCREEN_X))
end

function openPause(item)
    holdQueue()
    mode = VESPER_MENU_PAUSE
    menuHead("A pause")
    local list = [{say = "Go on", act = releaseQueue}, {say = "Keep this page", act = openSaving}, {say = "Another page", act = openLoading}, {say = "Options", act = openOptions}, {say = "To the title", act = toTitle}]
    showItems(list, "item", 260, 350, 150)
end

function toTitle(item)
    openTitle()
end

function stepPause()
    if pressed["back"] or pressed["menu"]
        releaseQueue()
    else
        stepItems()
    end
end

@@ From a menu's menu back to where it was opened.
function backToMenu(item)
    if previousMode == VESPER_MENU_MAIN
        releaseQueue()
    else
        openPause()
    end
end

function stepSubmenu()
    if pressed["back"] or pressed["menu"]
        backToMenu()
    else
        stepItems()
    end
end
