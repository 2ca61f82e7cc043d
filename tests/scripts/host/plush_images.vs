p = Plush
image = p["createImage"](0, -5, 300, 0, 0, 255)
w, h = p["imageSize"](image)
print(w, h, p["getPixel"](image, 0, 0))         @@ expect: 1\t1\t44\t0\t0\t255
image = p["createImage"](3, 2, 1, 2, 3, 4)
p["setPixel"](image, 0, 0, 9, 9, 9, 9)
p["mirrorImage"](image, 0)
print(p["getPixel"](image, 2, 0), p["getPixel"](image, 0, 0))       @@ expect: 9\t9\t9\t9\t1\t2\t3\t4
p["mirrorImage"](image, not)
print(p["getPixel"](image, 2, 1))               @@ expect: 9\t9\t9\t9
print(pcall(p["setPixel"], image, 0, 0, 0, 0, 0, 256))      @@ expect: false\tPlush.setPixel: a must be between 0 and 255
print(pcall(p["setPixel"], image, -1, 0, 0, 0, 0, 256))     @@ expect: false\tPlush.setPixel: pixel coordinates are outside the image
print(pcall(p["setPixel"], image, 0, 0))                    @@ expect: false\tPlush.setPixel: missing argument 4
print(pcall(p["mirrorImage"], image))                       @@ expect: false\tPlush.mirrorImage: missing argument 2
print(p["checkImage"](image), p["checkImage"]($1234), p["checkImage"](not))     @@ expect: true\tfalse\tfalse
p["insertReflection"](image, image)
print(p["killImage"](image), p["killImage"](image), p["checkImage"](image))     @@ expect: not\tnot\tfalse
print(pcall(p["getPixel"], image, 0, 0))        @@ expect: false\tPlush.getPixel: image must be a valid image
print(pcall(p["insertReflection"], not, not))   @@ expect: false\tPlush.insertReflection: image must be a valid image
print(p["loadPlushImage"]("none.pmg"))          @@ expect: not\t0\t0
print(Metal["getWindow"](), Metal["checkClose"](), Metal["getTitle"](), Sailfish["orientation"]())  @@ expect: not\ttrue\tnot\t0
p["loadPNG"]("a\\b.png")                        @@ error: Plush.loadPNG: failed to load image: a/b.png
