@@ Pictures, portraits and planes, by what is seen in the framebuffer.
function picture(name, w, h, r, g, b)
    local image = Plush["createImage"](w, h, r, g, b, 255)
    Plush["saveImage"](append + "/" + name, image)
    Plush["killImage"](image)
    return append + "/" + name
end
function at(x, y)
    local r, g, b = Plush["getPixel"](VESPER_FRAMEBUFFER, x, y)
    return r + "," + g + "," + b
end
function wipe()
    Plush["killImage"](VESPER_FRAMEBUFFER)
    VESPER_FRAMEBUFFER = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, 255)
end
red = picture("red.png", 4, 4, 255, 0, 0)
green = picture("green.png", 4, 4, 0, 255, 0)
nobmp = picture("no.png", 2, 2, 9, 9, 9)

@@ Layers from the back to the front, in one layer in the order of the queue; strange entries stay as they are.
renderQueue = [{type = VESPER_IMAGE, layer = 3, text = red, x = 0, y = 0}, {type = VESPER_IMAGE, layer = 2, text = green, x = 2, y = 0}]
push(renderQueue, {type = VESPER_IMAGE, layer = 7, text = red, x = 10, y = 0})
push(renderQueue, {type = VESPER_IMAGE, layer = "3", text = red, x = 10, y = 0})
push(renderQueue, {type = VESPER_IMAGE, layer = 2.5, text = red, x = 10, y = 0})
push(renderQueue, {type = VESPER_RENDER_SKIP, layer = 1})
push(renderQueue, {layer = 1, type = 4711})
push(renderQueue, "nothing to draw")
push(renderQueue, {type = VESPER_IMAGE, layer = 3, text = "missing.png", x = 20, y = 0})
wipe()
Vesper["renderStack"]()
print(at(0, 0), at(3, 0), at(5, 0), at(10, 0), at(20, 0), at(22, 0))    @@ expect: 255,0,0\t255,0,0\t0,255,0\t0,0,0\t9,9,9\t0,0,0
print(#renderQueue, #purgeList, layer, renderQueue[1]["w"], renderQueue[1]["h"])                    @@ expect: 9\t0\t5\t4\t4

@@ What is no picture any more is left out without a word.
Plush["killImage"](renderQueue[1]["surface"])
wipe()
Vesper["renderStack"]()
print(at(0, 0), at(3, 0))                                               @@ expect: 0,0,0\t0,255,0
renderQueue = [{type = VESPER_IMAGE, layer = 1, text = red, x = 4, y = 4, scale = 3.0}]
wipe()
Vesper["renderStack"]()
print(at(4, 4), at(13, 13), at(16, 16))                                 @@ expect: 255,0,0\t255,0,0\t0,0,0

@@ Portraits stand on one ground; the left ones are mirrored, the inactive ones dimmed as they are loaded.
half = Plush["createImage"](10, 100, 0, 0, 200, 255)
for y = 0, 99
    Plush["setPixel"](half, 0, y, 255, 255, 255, 255)
end
Plush["saveImage"](append + "/half.png", half)
yOffset = -544
pages = [{active1 = true, active3 = false}]
pagenum = 1
renderQueue = [{type = VESPER_CHARACTER1, layer = 3, text = "missing", text2 = append + "/half.png"}]
push(renderQueue, {type = VESPER_CHARACTER3, layer = 3, text = append + "/half.png"})
push(renderQueue, {type = VESPER_CHARACTER4, layer = 3, text = append + "/half.png"})
wipe()
Vesper["renderStack"]()
print(at(153, 444), at(162, 444), at(158, 443), at(158, 543))           @@ expect: 0,0,200\t255,255,255\t0,0,0\t0,0,200
print(at(576, 500), at(580, 500) != at(801, 500), at(797, 500), at(801, 500))       @@ expect: 231,231,231\ttrue\t255,255,255\t0,0,200
print(VESPER_INACTIVE_1, VESPER_INACTIVE_3, VESPER_INACTIVE_4)          @@ expect: false\ttrue\tfalse
before = at(580, 500)
wipe()
Vesper["renderStack"]()
print(at(580, 500) == before, renderQueue[2]["w"], renderQueue[2]["h"])  @@ expect: true\t10\t100
pages = not
renderQueue = [{type = VESPER_CHARACTER2, layer = 3, text = append + "/half.png"}]
wipe()
Vesper["renderStack"]()
print(at(324, 500), VESPER_INACTIVE_2)                                  @@ expect: 0,0,200\tfalse

@@ Planes go by their factors, held between the lowest offset and 0; the nearest has its place by the flag.
plane = {skybox = picture("sky.png", 960, 600, 1, 1, 1), background = picture("back.png", 30, 600, 2, 2, 2)}
plane["characterlayer"] = picture("char.png", 20, 600, 3, 3, 3)
plane["foreground"] = picture("front.png", 10, 600, 4, 4, 4)
parallaxPoints = [0, 0.01, 0.02, 0.05, 1.0, -70]
renderQueue = [{type = VESPER_PARALLAX, text = plane, text2 = {}}]
push(renderQueue, {type = VESPER_IMAGE, layer = VESPER_LAYER_SUPERGROUND, text = red, x = 0, y = 0})
wipe()
Vesper["renderStack"]()
print(at(4, 529), at(4, 530), at(15, 540), at(25, 540), at(900, 540))   @@ expect: 4,4,4\t3,3,3\t3,3,3\t2,2,2\t1,1,1
print(at(0, 0))                                                         @@ expect: 255,0,0
VESPER_PARALLAX_UIFG = true
push(renderQueue, {type = VESPER_PARALLAX, text = {skybox = red}})
parallaxPoints = [-30, 0.01, 0.02, 0.05, 1.0, -70]
yOffset = 400
wipe()
Vesper["renderStack"]()
print(at(4, 543), at(0, 0), at(900, 540))                               @@ expect: 4,4,4\t9,9,9\t1,1,1
VESPER_PARALLAX_UIFG = "neither"
table["remove"](renderQueue)
wipe()
Vesper["renderStack"]()
print(at(4, 540))                                                       @@ expect: 3,3,3

debugger = true
Vesper["renderStack"]()
begins = string["find"](debuglog, "1: ", 1, true)
print(string["sub"](debuglog, begins))
@@ expect: 1: Removing 0 render tasks
@@ expect: 2: 2 render tasks in stack
@@ expect: 
debugger = false
nobmp = "gone.png"
renderQueue = [{type = VESPER_IMAGE, layer = 1, text = "missing.png", x = 0, y = 0}]
Vesper["renderStack"]()                                                 @@ error: Plush.loadPNG: failed to load image: gone.png
