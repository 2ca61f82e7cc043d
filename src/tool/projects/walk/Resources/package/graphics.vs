@@ Runs before the game: the picture's size, the textures, and how the world is seen.

@@ The world is drawn this large; the window shows it enlarged.
WIDE = 240
HIGH = 135
screen = Plush["createImage"](WIDE, HIGH, 0, 0, 0, 255)

@@ A texture of one's own: a shader says each pixel's colour. A PNG file would do as well, with Plush["loadPNG"].
function paint(shader)
    local picture = Plush["createImage"](32, 32, 0, 0, 0, 255)
    Plush["shader"](picture, shader, {}, 1, true)
    return picture
end

BRICKS = "local row = floor(y / 8)\nlocal shift = x + row % 2 * 8\nlocal joint = 1\nif y % 8 < 1 or shift % 16 < 1\n    joint = 0.6\nend\nr = 0.62 * joint\ng = 0.4 * joint\nb = 0.32 * joint"
FLAGS = "local even = (floor(x / 16) + floor(y / 16)) % 2\nr = 0.32 + even * 0.08\ng = 0.36 + even * 0.08\nb = 0.4 + even * 0.08"
PLANKS = "local gap = 1\nif x % 8 < 1\n    gap = 0.7\nend\nr = 0.36 * gap\ng = 0.27 * gap\nb = 0.2 * gap"
GATE = "r = 0.9\ng = 0.72\nb = 0.3\nif x % 8 < 2\n    r = 0.5\n    g = 0.36\n    b = 0.12\nend"

@@ The first is none; a map says 1 for the second.
textures = [not, paint(BRICKS), paint(FLAGS), paint(PLANKS), paint(GATE)]

Plush["setFov"](60)
Plush["setAccuracy"](1)
Plush["setRenderDistance"](160)
Plush["fog"](14, 16, 24)
Plush["setLightLevel"](0.7, 1.6)
