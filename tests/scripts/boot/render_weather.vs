leafImage = Plush["createImage"](3, 3, 250, 120, 10, 255)
Plush["saveImage"](append + "/leaf.png", leafImage)
weatherStart = -20
weatherEnd = 560
mode = VESPER_GAME_VISUAL_NOVEL
function leaf(place, y, speed)
    return {type = VESPER_WEATHER, layer = place, text = append + "/leaf.png", x = 50, y = y, fw = speed, w = 4, h = 3, font = 6, colour = 0, scale = 1.0, rotation = 0}
end

@@ Down with a negative speed, up with a positive one, both without end.
renderQueue = [leaf(2, 100, -3), leaf(2, 100, 3)]
Vesper["renderStack"]()
print(renderQueue[1]["y"] >= 100 and renderQueue[1]["y"] <= 103, renderQueue[2]["y"] <= 100 and renderQueue[2]["y"] >= 97)     @@ expect: true\ttrue
print(renderQueue[1]["y"] - 100 == -renderQueue[1]["text2"], 100 - renderQueue[2]["y"] == renderQueue[2]["text2"])   @@ expect: true\ttrue

@@ To the right by half of what it goes to the left, and back at the limit.
turns = 0
sign = 1
right = true
for frame = 1, 200
    piece = renderQueue[1]
    piece["y"] = 100
    x = piece["x"]
    swing = piece["colour"]
    way = piece["font"]
    Vesper["renderStack"]()
    moved = piece["x"] - x
    swing = piece["colour"] - swing
    if way > 0 and moved != Vesper["round"](swing / 2) or way < 0 and moved != swing
        right = false
    end
    if way * piece["font"] < 0
        turns += 1
    end
    renderQueue[2]["y"] = 100
end
print(right, turns > 10, piece["colour"] <= 10 and piece["colour"] >= -10)       @@ expect: true\ttrue\ttrue

@@ What has left is purged after the frame, whatever layers it was in; what stays keeps its place.
kept = leaf(3, 200, -1)
kept["identifier"] = "kept"
also = {type = VESPER_IMAGE, layer = 9, identifier = "also"}
renderQueue = [leaf(4, 559, -1), kept, leaf(2, -60, 1), also, leaf(3, 700, -1)]
gone = renderQueue[1]
gone["fw"] = -8
for frame = 1, 40
    Vesper["renderStack"]()
end
print(#renderQueue, renderQueue[1]["identifier"], renderQueue[2]["identifier"], Plush["checkImage"](gone["surface"]))     @@ expect: 2\tkept\talso\tfalse
Vesper["cleanup"]()
print(Plush["checkImage"](kept["surface"]))                             @@ expect: true

@@ The weather holds its breath while games are saved.
mode = VESPER_MENU_SAVE
renderQueue = [leaf(2, 100, -3)]
Vesper["renderStack"]()
print(renderQueue[1]["y"], renderQueue[1]["surface"])                   @@ expect: 100\tnot
mode = VESPER_GAME_VISUAL_NOVEL
renderQueue = [leaf(2, 100, 0)]
Vesper["renderStack"]()                                                 @@ error: random function requires a positive maximum value
