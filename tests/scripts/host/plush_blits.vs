p = Plush
function blit(target, image, x, y, blend, scale, rotation)
    return p["blitImage"](target, image, x, y, blend, scale, rotation)
end
function pixel(image, x, y)
    print(p["getPixel"](image, x, y))
end
function numbered(width, height)
    image = p["createImage"](width, height, 0, 0, 0, 255)
    y = 0
    while y < height
        x = 0
        while x < width
            p["setPixel"](image, x, y, x + 1, y + 1, 0, 255)
            x = x + 1
        end
        y = y + 1
    end
    return image
end

@@ The mix rounds down, and pays no heed to the target's alpha in colours.
half = p["createImage"](1, 1, 10, 20, 30, 128)
target = p["createImage"](3, 3, 200, 100, 50, 255)
print(blit(target, half, 0, 0, true, 1, 0))         @@ expect: not
pixel(target, 0, 0)                                 @@ expect: 104\t59\t39\t255
clear = p["createImage"](3, 3, 0, 0, 0, 0)
blit(clear, half, 1, 1, 0, 1, 0)
pixel(clear, 1, 1)                                  @@ expect: 5\t10\t15\t128
blit(target, clear, 0, 0, true, 1, 0)
pixel(target, 2, 2)                                 @@ expect: 200\t100\t50\t255
blit(target, clear, -1, 0, not, 1, 0)
pixel(target, 1, 2)                                 @@ expect: 0\t0\t0\t0
pixel(target, 0, 1)                                 @@ expect: 5\t10\t15\t128
pixel(target, 2, 2)                                 @@ expect: 200\t100\t50\t255

@@ Halving takes columns 0 and 2 of three; a negative scale draws nothing unless turned.
three = numbered(3, 3)
target = p["createImage"](3, 3, 0, 0, 0, 0)
blit(target, three, 0, 0, false, 0.5, 0)
pixel(target, 0, 0)                                 @@ expect: 1\t1\t0\t255
pixel(target, 1, 1)                                 @@ expect: 3\t3\t0\t255
pixel(target, 2, 0)                                 @@ expect: 0\t0\t0\t0
target = p["createImage"](3, 3, 0, 0, 0, 0)
blit(target, three, 0, 0, false, -1, 0)
blit(target, three, 0, 0, false, 0, 45)
pixel(target, 0, 0)                                 @@ expect: 0\t0\t0\t0
blit(target, three, 2, 2, false, -1, 90)
pixel(target, 0, 0)                                 @@ expect: 3\t2\t0\t255
pixel(target, 1, 0)                                 @@ expect: 3\t3\t0\t255
@@ An image wholly off the target before scaling is not drawn, though its scaled box would reach it.
target = p["createImage"](3, 3, 0, 0, 0, 0)
blit(target, three, -3, 0, false, 9, 0)
pixel(target, 0, 0)                                 @@ expect: 0\t0\t0\t0
blit(target, three, -2, 0, false, 9, 0)
pixel(target, 2, 0)                                 @@ expect: 1\t1\t0\t255
@@ Full turns are none, and a right angle goes clockwise.
turned = p["createImage"](3, 3, 0, 0, 0, 0)
blit(turned, three, 0, 0, false, 1, 359.9995)
pixel(turned, 0, 2)                                 @@ expect: 1\t3\t0\t255
blit(turned, three, 0, 0, false, 1, 720)
pixel(turned, 2, 0)                                 @@ expect: 3\t1\t0\t255

@@ Rectangles: cut to the source, at least a pixel, none at all off the source.
target = p["createImage"](4, 2, 9, 9, 9, 9)
print(p["blitImageRect"](target, three, 5, 0, 2, 2, 0, 0, false, 1))    @@ expect: not
pixel(target, 0, 0)                                 @@ expect: 9\t9\t9\t9
p["blitImageRect"](target, three, 1, 1, 2, 2, 0, 0, true, 0.001)
pixel(target, 0, 0)                                 @@ expect: 2\t2\t0\t255
pixel(target, 1, 0)                                 @@ expect: 9\t9\t9\t9
p["blitImageRect"](target, three, -1, -1, 2, 2, 1, 0, false, 2)
pixel(target, 2, 1)                                 @@ expect: 1\t1\t0\t255
pixel(target, 3, 1)                                 @@ expect: 9\t9\t9\t9

@@ A skew onto the output's own rectangle copies; four equal corners draw nothing.
target = p["createImage"](3, 3, 0, 0, 0, 0)
p["skew"](three, target, 0, 0, 0, 0, 0, 0, 0, 0)
pixel(target, 0, 0)                                 @@ expect: 0\t0\t0\t0
p["skew"](three, target, 0, 0, 2, 0, 0, 2, 2, 2)
pixel(target, 0, 0)                                 @@ expect: 1\t1\t0\t255
pixel(target, 2, 1)                                 @@ expect: 3\t2\t0\t255
pixel(target, 1, 2)                                 @@ expect: 2\t3\t0\t255
print(p["skew"](not, target, 0, 0, 2, 0, 0, 2, 2, 2))       @@ expect: not

@@ Errors, and which of them comes first.
print(pcall(p["blitImage"], 1, 2))      @@ expect: false\tPlush.blitImage: expected 7 arguments (target, image, x, y, blend, scale, rotation)
print(pcall(p["blitImage"], not, 2, 0, 0, 0, 1, 0))         @@ expect: false\tPlush.blitImage: image must be a pointer
print(pcall(p["blitImage"], not, not, "a", 0, 0, 1, 0))     @@ expect: false\tPlush.blitImage: target must be a valid image
print(pcall(p["blitImage"], target, not, "a", 0, 0, 1, 0))  @@ expect: false\tPlush.blitImage: image must be a valid image
print(pcall(p["blitImage"], target, three, "a", 0, 0, 1, 0))        @@ expect: false\tPlush.blitImage: x must be numeric
print(pcall(p["blitImage"], target, three, 3, 0, 0, "s", "r"))      @@ expect: true
print(pcall(p["blitImage"], target, three, 2, 0, 0, "s", "r"))      @@ expect: false\tPlush.blitImage: scale must be numeric
print(pcall(p["blitImageRect"], 1))     @@ expect: false\tPlush.blitImageRect: expected 10 arguments (target, image, sx, sy, width, height, x, y, blend, scale)
print(pcall(p["blitImageRect"], target, not, 0, 0, 0, 0, 0, 0, 0, 0))       @@ expect: false\tPlush.blitImageRect: image must be a valid image
print(pcall(p["blitImageRect"], target, three, 0, 0, 0, 0, 0, 0, 0, "s"))   @@ expect: false\tPlush.blitImageRect: scale must be numeric
print(pcall(p["skew"], three, target, 0, 0, 0, 0, 0, 0, 0))         @@ expect: false\tPlush.skew: missing argument 10
p["skew"](three, target, 0, 0, 0, 0, 0, 0, "x", 0)          @@ error: Plush.skew: rbx must be numeric
