@@ What falls, sinks or rises in a place. Never in front of people unless a place asks for it.

novelWeathers = {}
novelPieces = []
novelPiecePictures = {}
novelWeatherLayer = 4

@@ Kinds of weather: `pictures`, `pieces` (how many), `fall` (pixels a frame, below 0 for rising), `sway` and `reach`
@@ (how fast and how far to the sides), `turn` (degrees a frame), `scale` (tenths, from and to), `tilt` (degrees). What has
@@ `drift` flies to the right instead, the largest so many pixels a frame, between the rows of its `band`; its pictures
@@ follow each other every `flap` frames. With less motion there is no weather, but what `stays` stands still.
function Novel["weather"](kind, how)
    novelWeathers[kind] = how
end

function novelStartWeather(place)
    for name, picture in pairs(novelPiecePictures)
        vesperKillSurface(picture["picture"])
    end
    novelPiecePictures = {}
    novelPieces = []
    novelWeatherLayer = novelIndexOf(NOVEL_LAYERS, place["behind"] or "people")
    if novelWeatherLayer == 0
        novelWeatherLayer = #NOVEL_LAYERS + 1
    end
    local how = novelWeathers[place["weather"] or ""]
    if how == not or settings["lessMotion"] and not how["stays"]
        return not
    end
    for name in how["pictures"]
        if novelPiecePictures[name] == not
            local picture = novelLoadPicture("pictures", name)
            local w, h = Plush["imageSize"](picture)
            novelPiecePictures[name] = {picture = picture, w = w, h = h}
        end
    end
    for i = 1, how["pieces"]
        local band = how["band"] or [-40, VESPER_SCREEN_Y]
        push(novelPieces, novelNewPiece(how, random(band[1], band[2])))
    end
end

function novelNewPiece(how, y)
    local file = novelPiecePictures[how["pictures"][random(1, #how["pictures"])]]
    local scales = how["scale"] or [10, 10]
    local reach = how["reach"] or [20, 40]
    local piece = {picture = file["picture"], x = random(-40, VESPER_SCREEN_X), y = y, scale = random(scales[1], scales[2]) / 10, rotation = how["tilt"] or 0, reach = random(reach[1], reach[2]), swung = 0, way = 1, how = how}
    if how["turn"] != not and how["turn"] > 1
        piece["rotation"] = random(0, 359)
    end
    if how["drift"] != not
        piece["height"] = y
        piece["phase"] = random(0, 30)
    end
    @@ Room for the picture however it is turned.
    local tilt = math["rad"](how["tilt"] or 0)
    local across = file["w"] * math["abs"](math["cos"](tilt)) + file["h"] * math["abs"](math["sin"](tilt))
    local down = file["h"]
    if how["turn"] != not
        across = math["sqrt"](file["w"] * file["w"] + file["h"] * file["h"])
        down = across
    end
    piece["halfX"] = math["floor"](across * piece["scale"] / 2) + 2
    piece["halfY"] = math["floor"](down * piece["scale"] / 2) + 2
    piece["cx"] = math["floor"](file["w"] * piece["scale"] / 2)
    piece["cy"] = math["floor"](file["h"] * piece["scale"] / 2)
    return piece
end

function novelWeatherFlies()
    return #novelPieces > 0 and novelPieces[1]["how"]["drift"] != not and not settings["lessMotion"]
end

@@ Those that are nearer are larger and faster. They rise a little on their way.
function novelFly(piece)
    local how = piece["how"]
    piece["phase"] += 1
    piece["along"] = (piece["along"] or piece["x"]) + how["drift"] * piece["scale"] / (how["scale"] or [10, 10])[2] * 10
    if piece["along"] > VESPER_SCREEN_X + 40
        piece["along"] = 0.0 - random(40, 160)
        piece["height"] = random(how["band"][1], how["band"][2])
    end
    piece["x"] = math["floor"](piece["along"])
    piece["y"] = piece["height"] - piece["x"] \ 14 + math["floor"](math["sin"](piece["phase"] * 0.11) * 3)
    local frame = piece["phase"] \ how["flap"] % #how["pictures"] + 1
    piece["picture"] = novelPiecePictures[how["pictures"][frame]]["picture"]
end

@@ The piece, or a new one in its place where it has left the stage.
function novelFall(piece)
    local how = piece["how"]
    if how["fall"] < 0
        piece["y"] -= random(-how["fall"])
    else
        piece["y"] += random(how["fall"])
    end
    local swing = random(how["sway"] or 1)
    piece["swung"] += swing
    if how["turn"] != not
        piece["rotation"] += random(how["turn"]) * piece["way"]
    end
    @@ Half as far out as back, so that wind blows them to the left.
    if piece["way"] > 0
        piece["x"] += swing \ 2
    else
        piece["x"] -= swing
    end
    if piece["swung"] >= piece["reach"] * 2
        piece["swung"] = 0
        piece["way"] = -piece["way"]
    end
    if piece["y"] > VESPER_SCREEN_Y + 20
        return novelNewPiece(how, random(-50, -20))
    elseif piece["y"] < -40
        return novelNewPiece(how, VESPER_SCREEN_Y + random(0, 20))
    elseif piece["x"] < -60
        piece["x"] += VESPER_SCREEN_X + 90
    end
    return piece
end

function novelStepWeather()
    if settings["lessMotion"]
        return not
    end
    for i = 1, #novelPieces
        if novelPieces[i]["how"]["drift"] != not
            novelFly(novelPieces[i])
        else
            novelPieces[i] = novelFall(novelPieces[i])
        end
    end
    if #novelPieces > 0
        novelDirty = true
    end
end

function novelDrawPieces()
    for piece in novelPieces
        Plush["blitImage"](VESPER_FRAMEBUFFER, piece["picture"], piece["x"], piece["y"], true, piece["scale"], piece["rotation"])
    end
end

NOVEL_CELL_WIDE = 48
NOVEL_CELL_HIGH = 34
NOVEL_CELLS_ACROSS = 20
NOVEL_CELLS_DOWN = 16
novelCellSeen = []

@@ In the cells of the stage that pieces touch, what is behind the weather goes below them and what is in front of it
@@ over them.
function novelDrawPiecesBetween()
    local cells = novelTouchedCells()
    for cell in cells
        novelCopyCell(novelBackdrop, cell, false)
    end
    novelDrawPieces()
    for cell in cells
        novelCopyCell(novelForeground, cell, true)
    end
end

function novelCopyCell(from, cell, blend)
    local x = cell % NOVEL_CELLS_ACROSS * NOVEL_CELL_WIDE
    local y = cell \ NOVEL_CELLS_ACROSS * NOVEL_CELL_HIGH
    Plush["blitImageRect"](VESPER_FRAMEBUFFER, from, x, y, NOVEL_CELL_WIDE, NOVEL_CELL_HIGH, x, y, blend, 1)
end

@@ Each cell once: what is half clear in front must not go over it twice.
function novelTouchedCells()
    local cells = []
    local seen = novelCellSeen
    novelDrawCount = (novelDrawCount or 0) + 1
    for piece in novelPieces
        local x = piece["x"] + piece["cx"]
        local y = piece["y"] + piece["cy"]
        local left = math["max"](x - piece["halfX"], 0) \ NOVEL_CELL_WIDE
        local right = math["min"]((x + piece["halfX"]) \ NOVEL_CELL_WIDE, NOVEL_CELLS_ACROSS - 1)
        local top = math["max"](y - piece["halfY"], 0) \ NOVEL_CELL_HIGH
        local low = math["min"]((y + piece["halfY"]) \ NOVEL_CELL_HIGH, NOVEL_CELLS_DOWN - 1)
        for row = top, low
            for column = left, right
                local cell = row * NOVEL_CELLS_ACROSS + column
                if seen[cell + 1] != novelDrawCount
                    seen[cell + 1] = novelDrawCount
                    push(cells, cell)
                end
            end
        end
    end
    return cells
end
