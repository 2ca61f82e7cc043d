@@ Figures on a picture, cut and mixed.
p = Plush
sheet = p["createImage"](20, 10, 0, 0, 0, 255)
p["fillRect"](sheet, -3, 2, 8, 3, 200, 100, 50, 255)
print(p["getPixel"](sheet, 0, 2))                       @@ expect: 200\t100\t50\t255
print(p["getPixel"](sheet, 4, 4))                       @@ expect: 200\t100\t50\t255
print(p["getPixel"](sheet, 5, 4))                       @@ expect: 0\t0\t0\t255
p["fillRect"](sheet, 0, 2, 1, 1, 0, 0, 250, 51)
print(p["getPixel"](sheet, 0, 2))                       @@ expect: 160\t80\t90\t255
p["drawLine"](sheet, 0, 9, 19, 9, 1, 999, -5, 3.9, 255)
print(p["getPixel"](sheet, 19, 9))                      @@ expect: 255\t0\t3\t255
print(p["getPixel"](sheet, 19, 8))                      @@ expect: 0\t0\t0\t255
clear = p["createImage"](20, 10, 0, 0, 0, 0)
p["fillBox"](clear, 2, 1, 16, 8, 4, 10, 20, 30, 255)
p["drawBox"](clear, 2, 1, 16, 8, 4, 1, 90, 90, 90, 255)
print(p["getPixel"](clear, 2, 1))                       @@ expect: 0\t0\t0\t0
print(p["getPixel"](clear, 10, 1))                      @@ expect: 90\t90\t90\t255
print(p["getPixel"](clear, 10, 2))                      @@ expect: 10\t20\t30\t255
print(p["fillRect"](clear, 0, 0, 99999999999, 99999999999, 1, 2, 3, 255))   @@ expect: not
print(p["getPixel"](clear, 19, 9))                      @@ expect: 1\t2\t3\t255
print(pcall(p["fillRect"], clear, 0, 0, 1, 1, 1, 1, 1)) @@ expect: false\tPlush.fillRect: missing argument 9
print(pcall(p["fillRect"], 5, 0, 0, 1, 1, 1, 1, 1, 1))  @@ expect: false\tPlush.fillRect: image must be a pointer
print(pcall(p["fillBox"], not, 0, 0, 1, 1, 1, 1, 1, 1, 1))      @@ expect: false\tPlush.fillBox: image must be a valid image
print(pcall(p["drawBox"], clear, 0, 0, 1, 1, 1, "x", 1, 1, 1, 1))   @@ expect: false\tPlush.drawBox: thickness must be numeric
print(pcall(p["drawLine"], clear, 0, 0, 1, 1, 1, 1, 1, 1))  @@ expect: false\tPlush.drawLine: missing argument 10
print(Font["textSize"]("a", not), Font["wrapText"]("a", not, 5))    @@ expect: not\tnot
print(pcall(Font["textSize"], "a"))                     @@ expect: false\tFont.textSize: missing argument 2
print(pcall(Font["wrapText"], "a", not, "x"))           @@ expect: false\tFont.wrapText: width must be numeric
p["killImage"](sheet)
p["drawLine"](sheet, 0, 0, 1, 1, 1, 1, 1, 1, 1)         @@ error: Plush.drawLine: image must be a valid image
