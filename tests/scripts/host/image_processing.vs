p = Plush
image = p["createImage"](4, 3, 255, 255, 255, 255)
print(p["dither"](image, 0, true))          @@ expect: not
print(p["imageSize"](image))                @@ expect: 8\t6
p["bilinear"](image, 1.5)
print(p["imageSize"](image))                @@ expect: 12\t9
p["bilinearSolid"](image)
p["trimImage"](image, 3, 2)
print(p["imageSize"](image))                @@ expect: 3\t2
p["printImage"](image, 3, 2)                @@ expect: @@@
@@ expect: @@@
print(pcall(p["bilinear"], image, 1000000000))      @@ expect: false\tPlush.bilinear: the image is too large
print(pcall(p["trimImage"], image, 1))              @@ expect: false\tPlush.trimImage: missing argument 3
print(pcall(p["dither"], not, 1))                   @@ expect: false\tPlush.dither: image must be a valid image
print(pcall(p["printImage"], image, "x", 1))        @@ expect: false\tPlush.printImage: columns must be numeric
