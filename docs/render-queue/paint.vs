@@ What the pictures of docs/render-queue.md are made of: flat colours, so that they stay small.

stageColour = [44, 50, 78, 255]
words = [Font["loadFont"](append + "/fonts/words.ttf", 40), 0]

function box(picture, x, y, wide, high, colour)
    Plush["fillRect"](picture, x, y, wide, high, colour[1], colour[2], colour[3], colour[4])
end

function keep(picture, name)
    Plush["saveImage"](append + "/" + name + ".png", picture)
    Plush["killImage"](picture)
end

function empty(wide, high)
    return Plush["createImage"](wide, high, 0, 0, 0, 0)
end

@@ A plane of the scene: a ground that rises and falls in steps.
function paintGround(name, top, swing, step, colour)
    local picture = empty(960, 600)
    for x = 0, 959, step
        local rise = (x \ step * 7 % 5) * swing
        box(picture, x, top - rise, step, 600 - top + rise, colour)
    end
    keep(picture, name)
end

function paintFigure(name, coat)
    local picture = empty(200, 400)
    Plush["fillBox"](picture, 40, 150, 120, 250, 40, coat[1], coat[2], coat[3], 255)
    Plush["fillBox"](picture, 50, 20, 100, 120, 50, 236, 200, 170, 255)
    @@ The nose and the eye tell where the face looks.
    box(picture, 34, 76, 30, 14, [220, 176, 146, 255])
    box(picture, 70, 60, 12, 12, [40, 34, 46, 255])
    keep(picture, name)
end

function paintLeaf()
    local picture = empty(36, 36)
    Plush["fillBox"](picture, 4, 10, 28, 16, 8, 222, 138, 60, 255)
    Plush["drawLine"](picture, 2, 18, 34, 18, 2, 140, 74, 36, 255)
    keep(picture, "leaf")
end

function paintNo()
    local picture = Plush["createImage"](120, 120, 120, 120, 130, 255)
    Plush["drawLine"](picture, 20, 20, 100, 100, 8, 220, 80, 80, 255)
    Plush["drawLine"](picture, 100, 20, 20, 100, 8, 220, 80, 80, 255)
    keep(picture, "ui/no")
end

sky = Plush["createImage"](960, 600, 96, 140, 190, 255)
Plush["fillBox"](sky, 700, 60, 110, 110, 55, 250, 226, 150, 255)
keep(sky, "sky")
paintGround("hills", 330, 26, 96, [92, 116, 140, 255])
paintGround("wood", 440, 16, 48, [58, 92, 84, 255])
paintGround("grass", 540, 8, 24, [38, 62, 48, 255])
paintFigure("ann", [176, 84, 84, 255])
paintFigure("ben", [84, 120, 176, 255])
paintLeaf()
paintNo()
for name, colour in pairs({red = [200, 80, 80, 255], green = [90, 170, 100, 255], blue = [80, 120, 200, 255]})
    keep(Plush["createImage"](300, 180, colour[1], colour[2], colour[3], 255), name)
end
