@@ Paints the pictures of the game: all of them, or the parts that are named.
@@     vesper run games/eleven-minutes/art/make_art.vs FOLDER [PART...]
@@ Parts are dusk, night, crossing, morning, library, grove, lamp, kitchen, people and ui. The pictures come out unpacked;
@@ `art/make` beside this script paints and packs them in place.

folder = arguments[1]

runFile("canvas.vs")
runFile("point.vs")
runFile("library.vs")
runFile("lamp.vs")
runFile("kitchen.vs")
runFile("grove.vs")
runFile("portraits.vs")
runFile("ui.vs")

function paintPart(name)
    if name == "library"
        paintLibrary()
    elseif name == "grove"
        paintGrove()
    elseif name == "lamp"
        paintLampRoom()
    elseif name == "kitchen"
        paintKitchen()
    elseif name == "people"
        paintPeople()
    elseif name == "ui"
        paintStandIns()
        paintWeather()
    else
        paintPoint(name)
    end
end

parts = []
for i = 2, #arguments
    push(parts, arguments[i])
end
if #parts == 0
    parts = ["dusk", "night", "crossing", "morning", "library", "grove", "lamp", "kitchen", "people", "ui"]
end
for i, name in ipairs(parts)
    paintPart(name)
end
