@@ The pictures, read once into lists, and what draws with them.

WIDE = 240
HIGH = 136

function picture(name)
    local image, high, wide = Plush["loadPNG"](append + "/images/" + name)
    return image
end

night = picture("glade-night.png")
lit = picture("glade-lit.png")
dawn = picture("glade-dawn.png")
frame = Plush["createImage"](WIDE, HIGH, 0, 0, 0, 255)

runFile(append + "/game/ground.vs")
runFile(append + "/game/sprites.vs")
runFile(append + "/game/letters.vs")
