@@ The place, who stands in it, and what falls from its sky. The render queue begins with fixed places, since
@@ sliding text is remembered by its place in the queue; weather comes behind them.

PLANES_AT = 1
PORTRAITS_AT = 1
PANEL_AT = 6
PLATE_AT = 7
NAME_AT = 8
WORDS_AT = 9
HINT_AT = 10
FIXED = 10

placeName = ""
cast = ["", "", "", ""]
castActive = [true, true, true, true]
portraitLight = Plush["compileShader"]("r = r * red\ng = g * green\nb = b * blue")
CAMERA_UP = -250
CAMERA_DOWN = -544
weatherStart = -60
weatherEnd = 590

function nothingThere()
    return {type = VESPER_SKIP, layer = VESPER_LAYER_SUPERGROUND, identifier = ""}
end

function putEntry(at, entry)
    local old = renderQueue[at]
    if old != not
        vesperKillSurface(old["surface"])
    end
    renderQueue[at] = entry
end

function leavePlace()
    for i, entry in ipairs(renderQueue)
        if entry["type"] == VESPER_WEATHER
            vesperKillSurface(entry["surface"])
        end
    end
    Vesper["cleanup"](true)
    items = []
    cast = ["", "", "", ""]
    placeName = ""
end

function enterPlace(name)
    leavePlace()
    placeName = name
    local place = places[name]
    local planes = {skybox = picturePath(pictureFolder, place["far"]), background = picturePath(pictureFolder, place["back"]), characterlayer = picturePath(pictureFolder, place["middle"]), foreground = picturePath(pictureFolder, place["near"])}
    local factors = place["factors"]
    parallaxPoints = [0, factors[1], factors[2], factors[3], factors[4], CAMERA_DOWN]
    table["insert"](renderQueue, {type = VESPER_PARALLAX, text = planes, text2 = {}, x = 0, identifier = "planes"})
    for at = 2, FIXED
        table["insert"](renderQueue, nothingThere())
    end
    yOffset = CAMERA_UP
    playMusic(place["music"], loadOffset)
    loadOffset = 0
    spreadWeather()
end

@@ Who stands where, and of those who speaks. The boot library dims the others as it loads them.
function setCast(wanted, page)
    for slot = 1, 4
        local name = wanted[slot]
        local active = page["active" + slot]
        if name == ""
            putEntry(PORTRAITS_AT + slot, nothingThere())
        elseif cast[slot] != name or castActive[slot] != active
            local kind = VESPER_CHARACTER1 + slot - 1
            putEntry(PORTRAITS_AT + slot, {type = kind, layer = VESPER_LAYER_CHARACTER, identifier = name, text = picturePath(pictureFolder, people[name]["picture"]), text2 = blankpc, scale = 1, rotation = 0})
        end
        castActive[slot] = active
        cast[slot] = name
    end
    lightPortraits(places[placeName]["light"])
end

@@ Portraits take on the light of the place. The boot library loads them with the first frame that shows them,
@@ so one is drawn ahead, up to their layer.
function lightPortraits(light)
    layers = VESPER_LAYER_CHARACTER
    Vesper["renderStack"]()
    layers = VESPER_LAYER_SUPERGROUND
    for slot = 1, 4
        local entry = renderQueue[PORTRAITS_AT + slot]
        if entry["type"] != VESPER_SKIP and not entry["lit"]
            Plush["shader"](entry["surface"], portraitLight, {red = light[1], green = light[2], blue = light[3]}, 1, true)
            entry["lit"] = true
        end
    end
end

function isOnStage(name)
    return contains(cast, name)
end

@@ The camera comes down to where people stand, ever slower.
function stepCamera()
    if yOffset > CAMERA_DOWN
        yOffset -= math["max"](1, (yOffset - CAMERA_DOWN) \ 11)
    end
end

function cameraRests()
    return yOffset <= CAMERA_DOWN
end

PIECES = {rain = 46, leaves = 26, down = 12}
PAUSES = {rain = 1, leaves = 5, down = 16}

function countWeather()
    local count = 0
    for i = FIXED + 1, #renderQueue
        if renderQueue[i]["type"] == VESPER_WEATHER
            count += 1
        end
    end
    return count
end

@@ Rain falls fast and hardly sways; leaves sink, swing and turn; thistledown rises.
function newPiece(kind, layer)
    local x = random(-40, VESPER_SCREEN_X)
    if kind == "rain"
        return {type = VESPER_WEATHER, layer = layer, text = picturePath(pictureFolder, "rain.png"), identifier = "", x = x, y = random(-50, -10), fw = -42, w = 1, h = 1, font = 2, colour = 0, scale = 1, rotation = 4}
    end
    if kind == "down"
        return {type = VESPER_WEATHER, layer = layer, text = picturePath(pictureFolder, "down.png"), identifier = "", x = x, y = random(400, VESPER_SCREEN_Y), fw = 2, w = 2, h = 1, font = random(20, 50), colour = 0, scale = 1, rotation = 0}
    end
    return {type = VESPER_WEATHER, layer = random(VESPER_LAYER_BACKGROUND, layer), text = picturePath(pictureFolder, "leaf" + random(1, 3) + ".png"), identifier = "", x = x, y = random(-50, -10), fw = -5, w = 3, h = 5, font = random(20, 60), colour = 0, scale = random(6, 11) / 10, rotation = random(0, 359)}
end

@@ One more piece every so many frames until the sky is full.
function stepWeather()
    local place = places[placeName]
    if place == not or place["weather"] == not
        return not
    end
    local kind = place["weather"]
    if frame % PAUSES[kind] == 0 and countWeather() < PIECES[kind]
        table["insert"](renderQueue, newPiece(kind, place["layer"]))
    end
end

@@ A place is entered with its weather already under way.
function spreadWeather()
    local place = places[placeName]
    if place["weather"] != not
        for i = 1, PIECES[place["weather"]]
            local piece = newPiece(place["weather"], place["layer"])
            piece["y"] = random(-40, VESPER_SCREEN_Y)
            table["insert"](renderQueue, piece)
        end
    end
end
