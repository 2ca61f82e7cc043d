f = Font
print(f["loadFont"]("no/such.ttf", 12))                     @@ expect: not
print(pcall(f["loadFont"], "no/such.ttf"))                  @@ expect: false\tFont.loadFont: missing argument 2
print(pcall(f["loadFont"], 1, 12))                          @@ expect: false\tFont.loadFont: path must be a string
print(pcall(f["loadFont"], "a", "b"))                       @@ expect: false\tFont.loadFont: size must be numeric
print(pcall(f["resizeFont"]))                               @@ expect: false\tFont.resizeFont: missing argument 1
print(pcall(f["resizeFont"], "a", 1))                       @@ expect: false\tFont.resizeFont: font must be a pointer
print(f["resizeFont"](not, 12))                             @@ expect: not
print(f["renderText"]("a", not, 1, 2, 3, 4))                @@ expect: not
print(pcall(f["renderText"], "a", not, 1, 2, 3))            @@ expect: false\tFont.renderText: missing argument 6
print(pcall(f["renderText"], 5, not, 1, 2, 3, 4))           @@ expect: false\tFont.renderText: text must be a string
print(pcall(f["renderText"], "a", not, 1, 2, "x", 4))       @@ expect: false\tFont.renderText: b must be numeric
print(pcall(f["renderText"], "a", not, 1, 2, 3, "x"))       @@ expect: false\tFont.renderText: a must be numeric
print(f["killFont"](not))                                   @@ expect: not
f["killFont"]()                                             @@ error: Font.killFont: missing argument 1
