faces = Plush["createCube"](1, 2, 16, 8, 4)
print(#faces, faces[1]["topleft"], faces[1]["bottomright"])     @@ expect: 6\t[8.000000, 40.000000, 12]\t[24.000000, 40.000000, 4]
print(faces[5]["topleft"], faces[6]["topleft"])                 @@ expect: [8.000000, 24.000000, 12]\t[8.000000, 40.000000, 4]
Plush["translate"](faces, 1, 2, 3)
print(faces[1]["tl"], faces[6]["br"])                           @@ expect: [9.000000, 42.000000, 15]\t[25.000000, 26.000000, 7]
square = [{tl = {1, 0, 0}, tr = {0, 1, 0}, bl = {0, 0, 1}, br = {1, 1, 1}}]
Plush["rotate"](square, 0, 0, 0, 0, 0, 90)
for n, corner in ipairs({"tl", "tr", "bl"})
    p = square[1][corner]
    print(Vesper["round"](p[1], 2) + 0.0, Vesper["round"](p[2], 2) + 0.0, Vesper["round"](p[3], 2) + 0.0)   @@ expect: 0.000000\t1.000000\t0.000000
end     @@ expect: -1.000000\t0.000000\t0.000000
@@      @@ expect: 0.000000\t0.000000\t1.000000
print(Vesper["centreOn"]([{tl = {0, 0, 0}, tr = {0, 0, 0}, bl = {0, 0, 0}, br = {0, 0, 0}}], 1, 2, 5)[1]["tl"])   @@ expect: [8, 24, 5]
print(Plush["KsRGB"](6600), Plush["KsRGB"](1000), Plush["KsRGB"](500, true))    @@ expect: 255\t255\t255\t255\t68\t0\t255\t68\t0
r, g, b = Plush["KsRGB"](10000)
print(r < 255, g < 255, b)                                      @@ expect: true\ttrue\t255
map = [[1, 1, 1], [1, 0, 1], [1, 1, 1]]
print(Plush["checkWall"](24, 24, map), Plush["checkWall"](8, 24, map))          @@ expect: false\ttrue
