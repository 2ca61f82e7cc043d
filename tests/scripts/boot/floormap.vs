f = Floormap
function show(map)
    for y, row in ipairs(map)
        line = ""
        for x, tile in ipairs(row)
            line += tile
        end
        print(line)
    end
end
show(f["genFloor"](3, 3, 0, false))     @@ expect: 111
@@ expect: 101
@@ expect: 111
print(#roombounds, #f["roomshapes"])    @@ expect: 0\t9
math["randomseed"](7)
map = f["genFloor"](30, 20, 6, 2)
math["randomseed"](7)
again = f["genFloor"](30, 20, 6, 2)
same = true
edge = true
for y = 1, 20
    for x = 1, 30
        same = same and map[y][x] == again[y][x]
        if x == 1 or y == 1 or x == 30 or y == 20
            edge = edge and map[y][x] == 1
        end
    end
end
print(same, edge, #roombounds > 1, f["checkPath"](2, 2, 29, 19, map))      @@ expect: true\ttrue\ttrue\ttrue
grid = [[0, 0, 1], [1, 0, 1], [1, 0, 0]]
print(f["checkPath"](1, 1, 3, 3, grid), f["checkPath"](3, 1, 1, 1, grid), f["checkPath"](1, 1, 9, 9, grid), f["checkPath"](1, 1, 1, 1, 5))     @@ expect: true\tfalse\tfalse\tfalse
show(f["applyWallRules"]([[1, 1, 1], [1, 0, 1], [1, 1, 1]], [[not, not, not, not, 2, not, not, 0, not], [not, not, not, 0, 3, not, not, not, not]]))
@@ expect: 121
@@ expect: 103
@@ expect: 111
print(f["applyWallRules"](5, []), f["applyWallRules"](grid, [[0, 0]]) == grid)      @@ expect: 5\ttrue
