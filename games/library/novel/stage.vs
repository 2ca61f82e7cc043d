@@ The place and who stands in it. Where nothing moves both are one picture, made once.

NOVEL_LAYERS = ["far", "back", "middle", "people", "near"]
NOVEL_CAMERA_UP = -250
NOVEL_CAMERA_DOWN = -544
novelPlace = ""
novelPlanes = {}
novelPortraits = {}
novelCast = ["", "", "", ""]
novelSpeaker = ""
novelCamera = NOVEL_CAMERA_DOWN
novelLight = "r = r * red\ng = g * green\nb = b * blue"

@@ Pictures of the stage at rest: all of it, what is behind the weather, and what is in front of it.
novelStill = not
novelBackdrop = not
novelForeground = not

function novelForgetStill()
    vesperKillSurface(novelStill)
    vesperKillSurface(novelBackdrop)
    vesperKillSurface(novelForeground)
    novelStill = not
    novelBackdrop = not
    novelForeground = not
    novelDirty = true
end

function novelLeavePlace()
    for name, plane in pairs(novelPlanes)
        vesperKillSurface(plane)
    end
    for name, portrait in pairs(novelPortraits)
        vesperKillSurface(portrait["picture"])
    end
    novelPlanes = {}
    novelPortraits = {}
    novelPlace = ""
    novelForgetStill()
end

@@ A place has up to four planes, or one picture. Planes go with the camera, each by its factor.
function novelEnterPlace(name)
    local same = novelIsSamePlace(name)
    novelLeavePlace()
    novelPlace = name
    novelFactors = {}
    local place = novelPlaces[name]
    if place == not
        return not
    end
    if place["picture"] != not
        novelPlanes["far"] = novelLoadPicture("pictures", place["picture"])
    end
    for i, plane in ipairs(["far", "back", "middle", "near"])
        if place[plane] != not
            novelPlanes[plane] = novelLoadPicture("pictures", place[plane])
        end
        novelFactors[plane] = (place["factors"] or [0, 0, 0, 0])[i]
    end
    novelCamera = NOVEL_CAMERA_DOWN
    if place["factors"] != not and not settings["lessMotion"] and not same
        novelCamera = NOVEL_CAMERA_UP
    end
    novelStartWeather(place)
end

@@ A place that changes only its sky or its sea is no new one, and the camera stays.
function novelIsSamePlace(name)
    local old = novelPlaces[novelPlace]
    local new = novelPlaces[name]
    return old != not and new != not and new["middle"] != not and old["middle"] == new["middle"]
end

function novelCameraRests()
    return novelCamera <= NOVEL_CAMERA_DOWN
end

@@ The camera comes down to where people stand, ever slower.
function novelStepCamera()
    if not novelCameraRests()
        novelCamera -= math["max"](1, (novelCamera - NOVEL_CAMERA_DOWN) \ 11)
        novelDirty = true
        if novelCameraRests()
            novelForgetStill()
        end
    end
end

function novelRestCamera()
    novelCamera = NOVEL_CAMERA_DOWN
    novelForgetStill()
end

@@ While somebody on the stage speaks, the others stand back.
function novelIsBack(slot)
    return novelSpeaker != "" and novelOnStage(novelSpeaker) and novelPersonOf(novelCast[slot]) != novelSpeaker
end

function novelOnStage(person)
    for slot = 1, 4
        if novelPersonOf(novelCast[slot]) == person
            return true
        end
    end
    return false
end

@@ Whether another place or other people are to be seen from now on.
function novelSceneDiffers()
    if novelScene["place"] != novelPlace
        return true
    end
    for slot = 1, 4
        if novelScene["cast"][slot] != novelCast[slot]
            return true
        end
    end
    return false
end

@@ Brings the stage to what the reader is at.
function novelSetStage(speaker)
    if novelScene["place"] != novelPlace
        novelEnterPlace(novelScene["place"])
    end
    novelCast = [novelScene["cast"][1] or "", novelScene["cast"][2] or "", novelScene["cast"][3] or "", novelScene["cast"][4] or ""]
    novelSpeaker = speaker or ""
    novelForgetStill()
    novelPlayMusic(novelScene["music"])
end

@@ A person's picture as it stands in this place: facing the middle, in its light, standing back or not.
function novelPortrait(slot)
    local name = novelCast[slot]
    local key = name + "|" + (slot <= 2) + "|" + novelIsBack(slot)
    if novelPortraits[key] == not
        local person = novelPeople[novelPersonOf(name)]
        local file = person["picture"]
        local face = novelFaceOf(name)
        if face != not and person["faces"] != not
            file = person["faces"][face] or file
        end
        local picture = novelLoadPicture("pictures", file)
        if slot <= 2
            Plush["mirrorImage"](picture, true)
        end
        if novelIsBack(slot)
            Plush["modifyImage"](picture, VESPER_INACTIVE, 0.0, 0.0, 0.0, 0.0)
        end
        novelLightUp(picture)
        local w, h = Plush["imageSize"](picture)
        novelPortraits[key] = {picture = picture, w = w, h = h}
    end
    return novelPortraits[key]
end

function novelLightUp(picture)
    local light = novelPlaces[novelPlace]["light"]
    if light == not
        return not
    end
    if typeOf(novelLight) == "string"
        novelLight = Plush["compileShader"](novelLight)
    end
    Plush["shader"](picture, novelLight, {red = light[1], green = light[2], blue = light[3]}, 1, true)
end

function novelDrawPeople(target)
    for slot = 1, 4
        local name = novelCast[slot]
        if name != "" and novelPeople[novelPersonOf(name)] != not and novelPeople[novelPersonOf(name)]["picture"] != not
            local portrait = novelPortrait(slot)
            local x = VESPER_PORTRAIT_CENTRES[slot] - Vesper["round"](portrait["w"] / 2)
            Plush["blitImage"](target, portrait["picture"], x, VESPER_PORTRAIT_GROUND - portrait["h"] + novelCamera, true, 1, 0)
        end
    end
end

function novelDrawLayer(target, name)
    if name == "people"
        novelDrawPeople(target)
    elseif novelPlanes[name] != not
        local y = Vesper["clamp"](Vesper["round"](novelCamera * novelFactors[name]), NOVEL_CAMERA_DOWN, 0)
        Plush["blitImage"](target, novelPlanes[name], 0, y, true, 1, 0)
    end
end

@@ Layers from one to another, their numbers counted as in the list above.
function novelDrawLayers(target, first, last)
    for number = first, last
        novelDrawLayer(target, NOVEL_LAYERS[number])
    end
end

function novelNewStage(alpha)
    return Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, alpha)
end

@@ Blending onto nothing gives premultiplied colours, which the front is freed of.
function novelMakeStill()
    novelStill = novelNewStage(255)
    novelDrawLayers(novelStill, 1, #NOVEL_LAYERS)
    if #novelPieces > 0
        novelBackdrop = novelNewStage(255)
        novelDrawLayers(novelBackdrop, 1, novelWeatherLayer - 1)
        novelForeground = novelNewStage(0)
        novelDrawLayers(novelForeground, novelWeatherLayer, #NOVEL_LAYERS)
        Plush["modifyImage"](novelForeground, VESPER_AETHER_SET)
    end
end

@@ The stage into the frame. While the camera moves its weather waits behind all planes but the last ones.
function novelDrawStage()
    if not novelCameraRests()
        Plush["blitImage"](VESPER_FRAMEBUFFER, novelBlack(), 0, 0, false, 1, 0)
        novelDrawLayers(VESPER_FRAMEBUFFER, 1, novelWeatherLayer - 1)
        novelDrawPieces()
        novelDrawLayers(VESPER_FRAMEBUFFER, novelWeatherLayer, #NOVEL_LAYERS)
        return not
    end
    if novelStill == not
        novelMakeStill()
    end
    Plush["blitImage"](VESPER_FRAMEBUFFER, novelStill, 0, 0, false, 1, 0)
    if #novelPieces > 0
        novelDrawPiecesBetween()
    end
end

function novelBlack()
    if novelBlackPicture == not
        novelBlackPicture = novelNewStage(255)
    end
    return novelBlackPicture
end
